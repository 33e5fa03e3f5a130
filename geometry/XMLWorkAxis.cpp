#include "geometry/XMLWorkAxis.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

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
        Match(child, On(Names::StartPoint, [&] { m_startPoint.Read(child); }),
              On(Names::EndPoint, [&] { m_endPoint.Read(child); }), On(Names::Axis, [&] { m_axis.Read(child); }));
    }
    return true;
}

}  // namespace KVR
