#pragma once

#include <span>
#include <string_view>

#include "authoring/SceneRecords.h"
#include "framework/api/EnumText.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"

// The elements of a scene, each written as a whole into the innermost open element. They throw what XmlFile throws.
namespace KVR::Authoring
{

class XmlFile;

std::string_view UnitText(UnitTypeEnum unit);
/// The text of an enumeration that has that end, as records state it. Throws GeneralException for an end of none.
template <class Enum, std::size_t kSize>
std::string_view WholeText(EnumText<Enum> const (&rows)[kSize], UTF8String const& end)
{
    std::string_view const text = TextOfEnd(rows, end.View());
    if (text.empty())
        throw GeneralException("a type is one that the format has a text for");
    return text;
}
/// Throws GeneralException for a transform with a number that is infinite or none.
std::string TransformText(Matrix3d const& transform);
/// Throws GeneralException for an id with a "]".
std::string PathText(OccurrencePath const& path);
/// Throws GeneralException for an id that is empty or has a comma or a blank.
std::string ItemsText(std::span<UTF8String const> ids);

/// "ID", "Label" and "VersionPersistentId" of the element just opened.
void WriteHead(XmlFile& file, ObjectRecord const& object);
void WriteChangeKey(XmlFile& file, ObjectRecord const& object);
void WriteExtensionData(XmlFile& file, ObjectRecord const& object);
/// Nothing for a unit that states nothing.
void WriteUnit(XmlFile& file, UnitRecord const& unit);
/// Nothing for an empty list.
void WriteStyleRefs(XmlFile& file, ElementName name, std::span<UTF8String const> styles);
void WriteXYZ(XmlFile& file, ElementName name, XYZ const& value);
void WriteColor(XmlFile& file, ElementName name, ColorRecord const& color);
void WriteFileProperties(XmlFile& file, FilePropertiesRecord const& properties);
void WriteFileChild(XmlFile& file, FileChild const& child);
void WriteUniverse(XmlFile& file, UniverseRecord const& universe);
void WriteCrossLevel(XmlFile& file, CrossLevelRecord const& crossLevel);
void WriteInstance(XmlFile& file, InstanceRecord const& instance);

void WriteBody(XmlFile& file, BodyRecord const& body);
void WriteMesh(XmlFile& file, MeshRecord const& mesh);
void WriteCurve(XmlFile& file, CurveElementRecord const& curve);
void WritePoint(XmlFile& file, PointRecord const& point);
void WritePointCloud(XmlFile& file, PointCloudRecord const& cloud);
void WriteWorkAxis(XmlFile& file, WorkAxisRecord const& axis);
void WriteWorkPlane(XmlFile& file, WorkPlaneRecord const& plane);
void WriteWorkPoint(XmlFile& file, WorkPointRecord const& point);
void WriteSketch(XmlFile& file, SketchRecord const& sketch);
/// Opens a set and writes all but its children; whoever calls closes it.
void BeginSet(XmlFile& file, ElementName name, GeometryRecord const& set);

void WriteAttributeSet(XmlFile& file, AttributeSetRecord const& set);
void WriteCallout(XmlFile& file, CalloutRecord const& callout);

}  // namespace KVR::Authoring
