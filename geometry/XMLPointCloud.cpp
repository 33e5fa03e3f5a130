#include "geometry/XMLPointCloud.h"

#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/Ignored.h"
#include "readers/UnitReader.h"

namespace KVR
{

XMLPointCloud::XMLPointCloud(XMLProducerImpl* producer)
    : LengthUnitState(UTF8String(), UTF16String()), m_producer(producer)
{
}

XMLPointCloud::~XMLPointCloud() = default;

void XMLPointCloud::Point(std::size_t index, double* x, double* y, double* z) const
{
    if (index < m_coordinates.RowCount())
        m_coordinates.ReadRow(index, *x, *y, *z);
}

// Kept: "VersionPersistentId" is not read here, although a point has it.
void XMLPointCloud::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    m_producer->ApplyIdMapping(m_id);
    m_visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHiddenAbsentShown);
    m_netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHiddenAbsentShown);
}

bool XMLPointCloud::ReadFromXML(xercesc::DOMNode* node)
{
    if (!node)
        return false;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
    {
        // Kept: a cloud has no change key, extension data, styles or tolerances of its own.
        Match(child,
              On(Names::PointCloud, [&] { m_coordinates.Append(AttributeText(child, Names::PointCloudCoordinates)); }),
              On(Names::Transform, [&] { SetTransform(TransformOf(child)); }),
              On(Names::Unit, [&] { Ignored(ReadLengthUnits(child, m_lengthUnit, m_displayLengthUnit)); }));
    }
    m_coordinates.ReleaseSpare();
    return true;
}

}  // namespace KVR
