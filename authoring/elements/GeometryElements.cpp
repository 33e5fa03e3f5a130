#include "authoring/XmlFile.h"
#include "authoring/XmlText.h"
#include "authoring/elements/ElementWriters.h"

namespace KVR::Authoring
{

namespace
{

void WriteVisibilities(XmlFile& file, ShownRecord const& shown)
{
    file.Attribute("Visibility", shown.isVisible ? "1" : "0");
    file.Attribute("NetVisibility", shown.isVisible ? "1" : "0");
}

void WriteTransform(XmlFile& file, std::optional<Matrix3d> const& transform)
{
    if (!transform || transform->IsIdentity())
        return;
    file.Begin("Transform");
    file.Text(TransformText(*transform));
    file.End();
}

void WriteTolerance(XmlFile& file, std::optional<ToleranceRecord> const& tolerance)
{
    if (!tolerance)
        return;
    file.Begin("Tolerance");
    if (tolerance->angular)
        file.Attribute("AngularTolerance", *tolerance->angular);
    if (tolerance->linear)
        file.Attribute("LinearTolerance", *tolerance->linear);
    if (tolerance->parameter)
        file.Attribute("ParamTolerance", *tolerance->parameter);
    file.End();
}

// What stands in every kind of geometry behind its own attributes.
void WriteGeometry(XmlFile& file, GeometryRecord const& geometry)
{
    WriteUnit(file, geometry.unit);
    WriteTolerance(file, geometry.tolerance);
    WriteTransform(file, geometry.transform);
    WriteStyleRefs(file, "Styles", geometry.styles);
    WriteStyleRefs(file, "NetStyles", geometry.netStyles);
    WriteChangeKey(file, geometry);
    WriteExtensionData(file, geometry);
}

void BeginGeometry(XmlFile& file, std::string_view name, GeometryRecord const& geometry)
{
    file.Begin(name);
    WriteHead(file, geometry);
    WriteVisibilities(file, geometry);
}

void WriteSubEntities(XmlFile& file, std::string_view name, std::span<SubEntityStyles const> entities)
{
    for (SubEntityStyles const& entity : entities)
    {
        file.Begin(name);
        file.Attribute("ID", entity.dataId.View());
        WriteStyleRefs(file, "Styles", entity.styles);
        file.End();
    }
}

}  // namespace

void WriteBody(XmlFile& file, BodyRecord const& body)
{
    BeginGeometry(file, "IBrep", body);
    file.Attribute("Type", std::string_view("kProducerGeometryType_" + std::string(body.type.View())));
    WriteGeometry(file, body);
    WriteSubEntities(file, "Face", body.faces);
    WriteSubEntities(file, "Edge", body.edges);
    file.End();
}

void WriteMesh(XmlFile& file, MeshRecord const& mesh)
{
    file.Begin("IPolygonMesh");
    WriteHead(file, mesh);
    file.Attribute("Visibility", mesh.isVisible ? "1" : "0");
    file.Attribute("Type", std::string_view("kPolygonMeshType_" + std::string(mesh.type.View())));
    if (mesh.levelOfDetailId)
        file.Attribute("LODID", mesh.levelOfDetailId->View());
    WriteGeometry(file, mesh);
    file.End();
}

void WriteCurve(XmlFile& file, CurveElementRecord const& curve)
{
    BeginGeometry(file, "ICurve", curve);
    for (UTF8String const& id : curve.kernelEntityIds)
    {
        file.Begin("GMKEntity");
        file.Attribute("EntityId", id.View());
        file.End();
    }
    WriteGeometry(file, curve);
    file.End();
}

void WritePoint(XmlFile& file, PointRecord const& point)
{
    BeginGeometry(file, "IPoint", point);
    WriteXYZ(file, "Point", point.position);
    WriteGeometry(file, point);
    file.End();
}

void WritePointCloud(XmlFile& file, PointCloudRecord const& cloud)
{
    // An element for each so many points keeps what is held small; a reader joins them.
    constexpr std::size_t kPointsPerElement = 4096;
    BeginGeometry(file, "IPointCloud", cloud);
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
        file.Begin("PointCloud");
        file.Attribute("PointCloudCoordinates", std::string_view(text));
        file.End();
    }
    file.End();
}

void WriteWorkAxis(XmlFile& file, WorkAxisRecord const& axis)
{
    BeginGeometry(file, "IWorkAxis", axis);
    WriteXYZ(file, "StartPoint", axis.start);
    WriteXYZ(file, "EndPoint", axis.end);
    WriteXYZ(file, "Axis", axis.axis);
    WriteGeometry(file, axis);
    file.End();
}

void WriteWorkPlane(XmlFile& file, WorkPlaneRecord const& plane)
{
    BeginGeometry(file, "IWorkPlane", plane);
    WriteXYZ(file, "Origin", plane.plane.origin);
    WriteXYZ(file, "Normal", plane.plane.normal);
    if (plane.plane.reference)
        WriteXYZ(file, "Reference", *plane.plane.reference);
    if (plane.displayRange)
    {
        file.Begin("DisplayRange");
        WriteXYZ(file, "MinPoint", plane.displayRange->first);
        WriteXYZ(file, "MaxPoint", plane.displayRange->second);
        file.End();
    }
    WriteGeometry(file, plane);
    file.End();
}

void WriteWorkPoint(XmlFile& file, WorkPointRecord const& point)
{
    BeginGeometry(file, "IWorkPoint", point);
    WriteXYZ(file, "WorkPoint", point.position);
    WriteGeometry(file, point);
    file.End();
}

void WriteSketch(XmlFile& file, SketchRecord const& sketch)
{
    BeginGeometry(file, "ISketch", sketch);
    file.Attribute("SketchTypeEnum", sketch.is3D ? "kSketchType_3D" : "kSketchType_2D");
    WriteGeometry(file, sketch);
    file.Begin("ChildSet");
    for (PointRecord const& point : sketch.points)
        WritePoint(file, point);
    file.End();
    file.Begin("CurveSet");
    for (CurveElementRecord const& curve : sketch.curves)
        WriteCurve(file, curve);
    file.End();
    file.End();
}

void BeginSet(XmlFile& file, std::string_view name, GeometryRecord const& set)
{
    BeginGeometry(file, name, set);
    WriteGeometry(file, set);
    file.Begin("ChildSet");
}

}  // namespace KVR::Authoring
