#include "framework/xml_util/XMLUtils.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

bool XMLUtils::GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, UTF8String& value)
{
    XMLCh const* const text = FindAttribute(node, name);
    if (!text)
        return false;
    value = XMLStrUtil::XMLStrToAStr(text);
    return true;
}

bool XMLUtils::GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, UTF16String& value)
{
    XMLCh const* const text = FindAttribute(node, name);
    if (!text)
        return false;
    value = XMLStrUtil::XMLStrToWStr(text);
    return true;
}

bool XMLUtils::GetNodeAttribute(xercesc::DOMNode const* node, XMLCh const* name, bool& value)
{
    XMLCh const* const text = FindAttribute(node, name);
    if (!text)
        return false;
    value = ToldBoolean(text, [](XMLCh const* held) { return Equals(held, u"1") || EqualsAnyCase(held, u"true"); });
    return true;
}

UTF16String XMLUtils::GetFilePath(xercesc::DOMNode const* node, UTF16String const& sceneFilePath)
{
    UTF16String path;
    if (!GetNodeAttribute(node, Names::Path, path))
        return {};
    return PathFromSceneFolder(sceneFilePath, path);
}

}  // namespace KVR
