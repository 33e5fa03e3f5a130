#include "geometry/XMLWorkAxis.h"

#include "framework/xml_util/DomWalk.h"

namespace KVR
{

XMLWorkAxis::XMLWorkAxis(XMLProducerImpl* producer) : WorkFeatureState(producer) {}
XMLWorkAxis::~XMLWorkAxis() = default;

bool XMLWorkAxis::ReadFromXML(xercesc::DOMNode* node)
{
    XMLHierachyObject::ReadFromXML(node);
    if (!node)
        return false;
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child, On(u"StartPoint", [&] { m_startPoint.Read(child); }),
              On(u"EndPoint", [&] { m_endPoint.Read(child); }), On(u"Axis", [&] { m_axis.Read(child); }));
    }
    return true;
}

}  // namespace KVR
