#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class XMLObject;

/// Reads an "ExtensionData" element. An absent type id, content or path is empty, and is set all the same. False for a
/// null node or one of another name.
[[nodiscard]] bool ReadExtensionData(xercesc::DOMNode const* node, ExtensionDataContent& content);

/// Reads an "ExtensionData" element and adds its content to the object.
void AddExtensionData(xercesc::DOMNode const* node, XMLObject& object);

/// Reads a run of ids in brackets, such as "[a][b][c]". The text is cut at each "]", and the one character in front of
/// each id is skipped unseen; a repeated id stays at its first place; text behind the last "]" counts for nothing. The
/// ids are not mapped.
IdSet ParseOccurrencePath(UTF8String const& text);

}  // namespace KVR
