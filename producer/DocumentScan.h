#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/UTF16String.h"

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KVR
{

class XMLProducerImpl;

/// Walks the children of the document's root: loads the side files that info sections name, builds the universe, notes
/// object elements, and then reads those. Always true. What a reader throws goes on to the caller.
bool ScanDocument(xercesc::XercesDOMParser const* parser, UTF16String const& sceneFilePath, XMLProducerImpl& producer);

}  // namespace KVR
