#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

/// Access to attributes of an element.
class KVR_XML_UTIL_API XMLUtils
{
public:
    /// Whether the attribute exists. The output is left alone when it does not, and for a null node or one that is no
    /// element.
    static bool GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, UTF8String& value);
    static bool GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, UTF16String& value);
    /// "1" and "true" (any case) are true; every other text, the empty one too, is false.
    static bool GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, bool& value);
    /// One of the format's attributes, by any of the forms above.
    template <class Value>
    static bool GetNodeAttribute(xercesc::DOMNode const* node, AttributeName name, Value& value)
    {
        return GetNodeAttribute(node, name.Document(), value);
    }

    /// The full path of the file that the attribute "Path" names: an absolute one as it stands, a relative one from the
    /// scene file's folder. Empty when the attribute is absent or empty.
    static UTF16String GetFilePath(xercesc::DOMNode const* node, UTF16String const& sceneFilePath);
};

}  // namespace KVR
