#pragma once

#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

namespace KVR
{

class ReadRecord;
class SceneCheck;

/// Whether the element left no object for want of a record in a store.
bool LacksRecord(ReadRecord const& record, xercesc::DOMNode const* element);

/// Why the element left no object: its own reason, then that of what it needed, and so on; at most a dozen.
std::vector<std::string> DropReasons(SceneCheck const& check, xercesc::DOMNode const* element);

/// Adds findings about elements that left no object.
void CheckDropped(SceneCheck& check);
/// Adds findings about references to objects of a kind that cannot stand there.
void CheckKinds(SceneCheck& check);
/// Adds findings about ids that two elements have.
void CheckIds(SceneCheck& check);

}  // namespace KVR
