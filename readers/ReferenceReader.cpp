#include "readers/ReferenceReader.h"

#include <utility>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/NodeAttributes.h"

namespace KVR
{

namespace
{

bool ReadRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, ElementName refName, IdSet& ids)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        UTF8String id;
        if (!IsNamed(child, refName) || !XMLUtils::GetNodeAttribute(child, Names::ID, id) || id.IsEmpty())
            continue;
        producer->ApplyIdMapping(id);
        ids.AddWithUniquenessCheck(std::move(id));
    }
    return !ids.IsEmpty();
}

}  // namespace

bool ReadStyleRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& styles)
{
    if (!IsNamed(node, Names::Styles) && !IsNamed(node, Names::NetStyles))
        return false;
    return ReadRefs(producer, node, Names::StyleRef, styles);
}

bool ReadCameraRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& cameras)
{
    return IsNamed(node, Names::CameraSet) && ReadRefs(producer, node, Names::CameraRef, cameras);
}

bool ReadChildRef(XMLProducerImpl* producer, xercesc::DOMNode const* node, UTF8String& id)
{
    UTF8String const writtenId = XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::ID));
    bool const isFound = producer->QueryMappedObject(writtenId, id);
    TellObserver(&ReadObserver::ReferenceMet, node, writtenId, isFound);
    return isFound;
}

}  // namespace KVR
