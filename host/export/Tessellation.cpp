#include "host/export/Tessellation.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <NCollection_DataMap.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <cmath>

#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "host/export/CurveShape.h"
#include "host/export/MeshTriangles.h"
#include "host/import/BodyMesh.h"

namespace KVR
{

namespace
{

// Between neighbours on a curve, in radians.
constexpr double kAngle = 0.2;

double DiagonalOf(TopoDS_Shape const& shape)
{
    Bnd_Box box;
    BRepBndLib::Add(shape, box, false);
    if (box.IsVoid() || box.IsOpen())
        return 1.0;
    double const diagonal = std::sqrt(box.SquareExtent());
    return std::isfinite(diagonal) && diagonal > 0.0 ? diagonal : 1.0;
}

std::vector<Triple> LineOf(TopoDS_Edge const& edge, double deflection)
{
    if (BRep_Tool::Degenerated(edge))
        return {};
    BRepAdaptor_Curve const curve(edge);
    GCPnts_TangentialDeflection const points(curve, kAngle, deflection);
    std::vector<Triple> line;
    for (int i = 1; i <= points.NbPoints(); ++i)
    {
        gp_Pnt const point = points.Value(i);
        if (!std::isfinite(point.X()) || !std::isfinite(point.Y()) || !std::isfinite(point.Z()))
            return {};
        line.push_back({point.X(), point.Y(), point.Z()});
    }
    return line.size() < 2 ? std::vector<Triple>() : line;
}

void AddEdges(TopoDS_Shape const& shape, double deflection, Tessellation& made)
{
    for (TopExp_Explorer edge(shape, TopAbs_EDGE); edge.More(); edge.Next())
        if (std::vector<Triple> line = LineOf(TopoDS::Edge(edge.Current()), deflection); !line.empty())
            made.lines.push_back(std::move(line));
}

using FaceStyles = NCollection_DataMap<TopoDS_Shape, std::string, TopTools_ShapeMapHasher>;

FaceStyles StylesOfFaces(IBrep const& brep, BODY const& body)
{
    FaceStyles styles;
    SubEntityToStylesMap const* const map = brep.StylesMap();
    if (!map || map->Size() == 0)
        return styles;
    for (BODY::SubId const& sub : body.FaceDataIds())
    {
        IdSet found;
        if (sub.place < body.FaceList().size() &&
            map->Styles(UTF8String(sub.dataId), found) == kIsValueSpecified_Yes && !found.IsEmpty())
            styles.Bind(body.FaceList()[sub.place]->Shape(), std::string(found.At(0).View()));
    }
    return styles;
}

// Faces that meet share vertices there, which have a normal for each of them.
void AddMesh(BodyMesh const& mesh, FaceStyles const& styles, Tessellation& made)
{
    constexpr std::uint32_t kNoPoint = ~0U;
    std::vector<std::uint32_t> points(mesh.Normals().size() / 3, kNoPoint);
    std::unordered_map<std::string, std::size_t> groups;
    mesh.ForEachFace(
        [&](TopoDS_Shape const& face, std::size_t first, std::size_t end)
        {
            std::string const* const style = styles.Seek(face);
            auto const [entry, isNew] = groups.try_emplace(style ? *style : std::string(), made.groups.size());
            if (isNew)
                made.groups.push_back({entry->first, {}});
            Tessellation::Group& group = made.groups[entry->second];
            for (std::size_t corner = 3 * first; corner < 3 * end; ++corner)
            {
                std::size_t const normal = mesh.CornerNormals()[corner];
                if (points[normal] == kNoPoint)
                {
                    std::size_t const vertex = mesh.Corners()[corner];
                    points[normal] = static_cast<std::uint32_t>(made.points.size());
                    double const* const place = &mesh.Vertices()[3 * vertex];
                    double const* const direction = &mesh.Normals()[3 * normal];
                    made.points.push_back({place[0], place[1], place[2]});
                    made.normals.push_back({direction[0], direction[1], direction[2]});
                }
                group.corners.push_back(points[normal]);
            }
        });
}

}  // namespace

Tessellation Tessellator::Of(ModelGeometry const& geometry)
{
    Tessellation made;
    switch (geometry.kind)
    {
        case GeometryKind::kMesh:
        {
            MeshTriangles triangles(*geometry.mesh, made);
            triangles.Read();
            m_task.notCarried.Add("polygons without usable corners", triangles.BadPolygons());
            m_task.notCarried.Add("outlines of very large concave polygons", triangles.TooLargePolygons());
            break;
        }
        case GeometryKind::kBody:
            AddBody(geometry, made);
            break;
        case GeometryKind::kCurve:
            AddLines(geometry, made);
            break;
        case GeometryKind::kPoint:
        {
            Triple const place{geometry.point->X(), geometry.point->Y(), geometry.point->Z()};
            if (std::isfinite(place[0]) && std::isfinite(place[1]) && std::isfinite(place[2]))
                made.dots.push_back(place);
            break;
        }
        case GeometryKind::kOther:
            break;
    }
    return made;
}

void Tessellator::AddBody(ModelGeometry const& geometry, Tessellation& made)
{
    BODY const* const body = geometry.body->Body();
    if (!body || body->Shape().IsNull())
    {
        m_task.notCarried.Add("bodies without a shape");
        return;
    }
    try
    {
        TopoDS_Shape const& shape = body->Shape();
        double const deflection = m_task.options.deflection * DiagonalOf(shape);
        if (!TopExp_Explorer(shape, TopAbs_FACE).More())
        {
            AddEdges(shape, deflection, made);
            return;
        }
        BRepMesh_IncrementalMesh const mesher(shape, deflection, false, kAngle);
        BodyMesh const mesh(shape);
        m_task.notCarried.Add("faces that could not be meshed", mesh.FacesWithoutTriangles());
        AddMesh(mesh, StylesOfFaces(*geometry.body, *body), made);
    }
    catch (Standard_Failure const&)
    {
        made = {};
        m_task.notCarried.Add("bodies that could not be meshed");
    }
}

void Tessellator::AddLines(ModelGeometry const& geometry, Tessellation& made)
{
    try
    {
        CurveShape const curve = CurveShape::Of(*geometry.curve);
        m_task.notCarried.Add("pieces of curves without a shape or an end", curve.missing);
        if (!curve.shape.IsNull())
            AddEdges(curve.shape, m_task.options.deflection * DiagonalOf(curve.shape), made);
    }
    catch (Standard_Failure const&)
    {
        made = {};
        m_task.notCarried.Add("curves that could not be followed");
    }
}

}  // namespace KVR
