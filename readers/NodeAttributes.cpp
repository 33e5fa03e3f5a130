#include "readers/NodeAttributes.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

bool ReadNodeAttributes(xercesc::DOMNode const* node, AttributeMap& attributes)
{
    if (!IsElement(node))
        return false;
    TellObserver(&ReadObserver::AllAttributesTaken, node);
    xercesc::DOMNamedNodeMap const* const items = node->getAttributes();
    for (XMLSize_t i = 0; i < items->getLength(); ++i)
    {
        xercesc::DOMNode const* const item = items->item(i);
        attributes.try_emplace(XMLStrUtil::XMLStrToAStr(item->getNodeName()),
                               XMLStrUtil::XMLStrToWStr(item->getNodeValue()));
    }
    return true;
}

XMLCh const* AttributeOrEmpty(xercesc::DOMNode const* node, AttributeName name)
{
    XMLCh const* const text = AttributeText(node, name);
    return text ? text : u"";
}

}  // namespace KVR
