#pragma once

// The family of element readers, declared low so that an owner can read children of any kind without knowing their
// classes; each is defined with the class it makes. A reader answers false when it leaves no usable object.

#include <xercesc/dom/DOMNode.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KVR
{

class ObjectNodeIndex;
class XMLInstance;

/// Reads an "IInstance", after its target where that was not read yet, and registers it. Null when the target is
/// missing or is neither component nor file.
XMLInstance* ReadInstance(xercesc::DOMNode* node, ObjectNodeIndex& objectNodeIndex);

/// Whether the scene in the parser is more than one lone part, judged from the document alone.
[[nodiscard]] bool ClassifyStructure(xercesc::XercesDOMParser const* parser);

}  // namespace KVR
