#include "authoring/XmlFile.h"
#include "authoring/XmlText.h"
#include "authoring/elements/ElementWriters.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

void WriteVisibilities(XmlFile& file, ShownRecord const& shown)
{
    file.Attribute(Names::Visibility, shown.isVisible ? "1" : "0");
    file.Attribute(Names::NetVisibility, shown.isVisible ? "1" : "0");
}

void WriteTransform(XmlFile& file, std::optional<Matrix3d> const& transform)
{
    if (!transform || transform->IsIdentity())
        return;
    file.Begin(Names::Transform);
    file.Text(TransformText(*transform));
    file.End();
}

void WriteTolerance(XmlFile& file, std::optional<ToleranceRecord> const& tolerance)
{
    if (!tolerance)
        return;
    file.Begin(Names::Tolerance);
    if (tolerance->angular)
        file.Attribute(Names::AngularTolerance, *tolerance->angular);
    if (tolerance->linear)
        file.Attribute(Names::LinearTolerance, *tolerance->linear);
    if (tolerance->parameter)
        file.Attribute(Names::ParamTolerance, *tolerance->parameter);
    file.End();
}

// What stands in every kind of geometry behind its own attributes.
void WriteGeometry(XmlFile& file, GeometryRecord const& geometry)
{
    WriteUnit(file, geometry.unit);
    WriteTolerance(file, geometry.tolerance);
    WriteTransform(file, geometry.transform);
    WriteStyleRefs(file, Names::Styles, geometry.styles);
    WriteStyleRefs(file, Names::NetStyles, geometry.netStyles);
    WriteChangeKey(file, geometry);
    WriteExtensionData(file, geometry);
}

void BeginGeometry(XmlFile& file, ElementName name, GeometryRecord const& geometry)
{
    file.Begin(name);
    WriteHead(file, geometry);
    WriteVisibilities(file, geometry);
}

void WriteSubEntities(XmlFile& file, ElementName name, std::span<SubEntityStyles const> entities)
{
    for (SubEntityStyles const& entity : entities)
    {
        file.Begin(name);
        file.Attribute(Names::ID, entity.dataId.View());
        WriteStyleRefs(file, Names::Styles, entity.styles);
        file.End();
    }
}

}  // namespace

void WriteBody(XmlFile& file, BodyRecord const& body)
{
    BeginGeometry(file, Names::IBrep, body);
    file.Attribute(Names::Type, WholeText(kProducerGeometryTypeTexts, body.type));
    WriteGeometry(file, body);
    WriteSubEntities(file, Names::Face, body.faces);
    WriteSubEntities(file, Names::Edge, body.edges);
    file.End();
}

void WriteMesh(XmlFile& file, MeshRecord const& mesh)
{
    file.Begin(Names::IPolygonMesh);
    WriteHead(file, mesh);
    file.Attribute(Names::Visibility, mesh.isVisible ? "1" : "0");
    file.Attribute(Names::Type, WholeText(kPolygonMeshTypeTexts, mesh.type));
    if (mesh.levelOfDetailId)
        file.Attribute(Names::LODID, mesh.levelOfDetailId->View());
    WriteGeometry(file, mesh);
    file.End();
}

void WriteCurve(XmlFile& file, CurveElementRecord const& curve)
{
    BeginGeometry(file, Names::ICurve, curve);
    for (UTF8String const& id : curve.kernelEntityIds)
    {
        file.Begin(Names::GMKEntity);
        file.Attribute(Names::EntityId, id.View());
        file.End();
    }
    WriteGeometry(file, curve);
    file.End();
}

void WritePoint(XmlFile& file, PointRecord const& point)
{
    BeginGeometry(file, Names::IPoint, point);
    WriteXYZ(file, Names::Point, point.position);
    WriteGeometry(file, point);
    file.End();
}

void WritePointCloud(XmlFile& file, PointCloudRecord const& cloud)
{
    // An element for each so many points keeps what is held small; a reader joins them.
    constexpr std::size_t kPointsPerElement = 4096;
    BeginGeometry(file, Names::IPointCloud, cloud);
    WriteGeometry(file, cloud);
    std::string text;
    for (std::size_t first = 0; first < cloud.points.size(); first += kPointsPerElement)
    {
        text.clear();
        std::span<XYZ const> const points(cloud.points);
        for (XYZ const& point : points.subspan(first, std::min(kPointsPerElement, points.size() - first)))
            for (double const coordinate : point)
            {
                if (!text.empty())
                    text += ' ';
                text += NumberText(coordinate);
            }
        file.Begin(Names::PointCloud);
        file.Attribute(Names::PointCloudCoordinates, std::string_view(text));
        file.End();
    }
    file.End();
}

void WriteWorkAxis(XmlFile& file, WorkAxisRecord const& axis)
{
    BeginGeometry(file, Names::IWorkAxis, axis);
    WriteXYZ(file, Names::StartPoint, axis.start);
    WriteXYZ(file, Names::EndPoint, axis.end);
    WriteXYZ(file, Names::Axis, axis.axis);
    WriteGeometry(file, axis);
    file.End();
}

void WriteWorkPlane(XmlFile& file, WorkPlaneRecord const& plane)
{
    BeginGeometry(file, Names::IWorkPlane, plane);
    WriteXYZ(file, Names::Origin, plane.plane.origin);
    WriteXYZ(file, Names::Normal, plane.plane.normal);
    if (plane.plane.reference)
        WriteXYZ(file, Names::Reference, *plane.plane.reference);
    if (plane.displayRange)
    {
        file.Begin(Names::DisplayRange);
        WriteXYZ(file, Names::MinPoint, plane.displayRange->first);
        WriteXYZ(file, Names::MaxPoint, plane.displayRange->second);
        file.End();
    }
    WriteGeometry(file, plane);
    file.End();
}

void WriteWorkPoint(XmlFile& file, WorkPointRecord const& point)
{
    BeginGeometry(file, Names::IWorkPoint, point);
    WriteXYZ(file, Names::WorkPoint, point.position);
    WriteGeometry(file, point);
    file.End();
}

void WriteSketch(XmlFile& file, SketchRecord const& sketch)
{
    BeginGeometry(file, Names::ISketch, sketch);
    file.Attribute(Names::SketchTypeEnum,
                   TextOfValue(kSketchTypeTexts, sketch.is3D ? ISketch::kSketchType_3D : ISketch::kSketchType_2D));
    WriteGeometry(file, sketch);
    file.Begin(Names::ChildSet);
    for (PointRecord const& point : sketch.points)
        WritePoint(file, point);
    file.End();
    file.Begin(Names::CurveSet);
    for (CurveElementRecord const& curve : sketch.curves)
        WriteCurve(file, curve);
    file.End();
    file.End();
}

void BeginSet(XmlFile& file, ElementName name, GeometryRecord const& set)
{
    BeginGeometry(file, name, set);
    WriteGeometry(file, set);
    file.Begin(Names::ChildSet);
}

}  // namespace KVR::Authoring
