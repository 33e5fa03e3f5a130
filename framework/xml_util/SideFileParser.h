#pragma once

#include <xercesc/sax2/DefaultHandler.hpp>

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// Streams an XML side file into a handler. Side files are read without document types: a file ends at a declaration of
/// one that has, or refers to, any content. Whatever stood before an error has reached the handler, an error of
/// encoding included.
///
/// Answers whether the file was there and well-formed to its end. An exception of the handler's own (out of memory)
/// goes on.
KVR_XML_UTIL_API bool ParseSideFile(UTF16String const& path, xercesc::DefaultHandler& handler);

}  // namespace KVR
