#include "readers/ReferenceReader.h"

#include <utility>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/TextConstants.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/NodeAttributes.h"

namespace KVR
{

namespace
{

bool ReadRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, std::u16string_view refName, IdSet& ids)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        UTF8String id;
        if (!IsNamed(child, refName) || !XMLUtils::GetNodeAttribute(child, u"ID", id) || id.IsEmpty())
            continue;
        producer->ApplyIdMapping(id);
        ids.AddWithUniquenessCheck(std::move(id));
    }
    return !ids.IsEmpty();
}

}  // namespace

bool ReadStyleRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& styles)
{
    if (!IsNamed(node, u"Styles") && !IsNamed(node, u"NetStyles"))
        return false;
    return ReadRefs(producer, node, kStyleRef, styles);
}

bool ReadCameraRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& cameras)
{
    return IsNamed(node, u"CameraSet") && ReadRefs(producer, node, u"CameraRef", cameras);
}

bool ReadChildRef(XMLProducerImpl* producer, xercesc::DOMNode const* node, UTF8String& id)
{
    return producer->QueryMappedObject(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, u"ID")), id);
}

}  // namespace KVR
