#pragma once

#include <map>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

using AttributeMap = std::map<UTF8String, UTF16String>;

/// Adds the node's attributes to the map; a name that is there already keeps its value. False, with nothing added, for
/// a null node or one that is no element.
[[nodiscard]] bool ReadNodeAttributes(xercesc::DOMNode const* node, AttributeMap& attributes);

/// The text of an attribute, owned by the document; empty when it is absent.
XMLCh const* AttributeOrEmpty(xercesc::DOMNode const* node, AttributeName name);

}  // namespace KVR
