#include "geometry/XMLWorkPoint.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

XMLWorkPoint::XMLWorkPoint(XMLProducerImpl* producer) : WorkFeatureState(producer) {}
XMLWorkPoint::~XMLWorkPoint() = default;

bool XMLWorkPoint::ReadFromXML(xercesc::DOMNode* node)
{
    XMLHierachyObject::ReadFromXML(node);
    if (!node)
        return false;
    for (xercesc::DOMNode* const child : Children(node))
        Match(child, On(Names::WorkPoint, [&] { m_position.Read(child); }));
    return true;
}

}  // namespace KVR
