#include "geometry/XMLPoint.h"

#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/CoordinateReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/UnitReader.h"

namespace KVR
{

XMLPoint::XMLPoint(XMLProducerImpl* producer) : LengthUnitState(UTF8String(), UTF16String()), m_producer(producer) {}
XMLPoint::~XMLPoint() = default;

IsValueSpecifiedEnum XMLPoint::PointColor(Color&) const
{
    return kIsValueSpecified_No;
}

IsValueSpecifiedEnum XMLPoint::PointSize(double&) const
{
    return kIsValueSpecified_No;
}

void XMLPoint::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    m_producer->ApplyIdMapping(m_id);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
    m_visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHiddenAbsentShown);
    m_netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHiddenAbsentShown);
}

bool XMLPoint::ReadFromXML(xercesc::DOMNode* node)
{
    if (!node)
        return false;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,                                                     //
              On(Names::Point, [&] { ReadXYZ(child, m_x, m_y, m_z); }),  //
              // Kept: each content is added, with or without a type id, where a curve keeps one that has it.
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),
              On(Names::Transform, [&] { SetTransform(TransformOf(child)); }),
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),
              On(Names::Unit, [&] { Ignored(ReadLengthUnits(child, m_lengthUnit, m_displayLengthUnit)); }),
              // Kept: these two match in any case, and then read nothing unless written exactly.
              OnAnyCase(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),
              OnAnyCase(Names::NetStyles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_netStyles)); }));
    }
    return true;
}

}  // namespace KVR
