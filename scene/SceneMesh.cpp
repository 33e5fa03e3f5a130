#include "scene/SceneMesh.h"

#include <BRepBndLib.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Poly_Triangulation.hxx>
#include <Precision.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <array>
#include <cmath>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/IBrep.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/tessellation/BodyMesh.h"
#include "framework/kernel/tessellation/ShapeMesher.h"
#include "scene/CurvePoints.h"
#include "scene/geometry/MeshTriangles.h"
#include "scene/geometry/TriangleRuns.h"

namespace KVR
{

namespace
{

// Gives faces or edges, by their places, the data ids and persistent ids that the body has for them. The first of
// several counts.
template <class Named>
void Name(std::vector<Named>& list, std::vector<BODY::SubId> const& ids, DataIdToPersistentIdMap const* persistentIds)
{
    for (BODY::SubId const& id : ids)
    {
        if (id.place >= list.size())
            continue;
        Named& named = list[id.place];
        if (named.dataId.empty())
            named.dataId = id.dataId;
        UTF8String persistentId;
        if (named.persistentId.empty() && persistentIds &&
            persistentIds->PersistentId(UTF8String(id.dataId), persistentId) == kIsValueSpecified_Yes)
            named.persistentId = persistentId.View();
    }
}

// The first style of each face, by its place; empty for none.
std::vector<std::string> StylesOfFaces(IBrep const& body, std::size_t faceCount)
{
    std::vector<std::string> result(faceCount);
    SubEntityToStylesMap const* const styles = body.StylesMap();
    if (!styles || styles->Size() == 0)
        return result;
    for (BODY::SubId const& face : body.Body()->FaceDataIds())
    {
        IdSet ids;
        if (face.place < faceCount && styles->Styles(UTF8String(face.dataId), ids) == kIsValueSpecified_Yes &&
            !ids.IsEmpty())
            result[face.place] = ids.At(0).View();
    }
    return result;
}

// A meshed body as the source of runs.
class BodySource
{
public:
    explicit BodySource(BodyMesh const& mesh) : m_mesh(mesh) {}

    std::array<double, 3> VertexAt(std::uint32_t index) const { return At(m_mesh.Vertices(), index); }
    std::array<double, 3> NormalAt(std::uint32_t index) const { return At(m_mesh.Normals(), index); }
    static std::array<double, 2> TextureAt(std::uint32_t) { return {}; }

private:
    static std::array<double, 3> At(std::vector<double> const& list, std::uint32_t index)
    {
        double const* const first = list.data() + 3 * std::size_t{index};
        return {first[0], first[1], first[2]};
    }

    BodyMesh const& m_mesh;
};

// The same numbers where they can be worked with: Open CASCADE refuses what is finer than its own tolerance.
IMeshTools_Parameters ParametersOf(MeshQuality const& quality, double diagonal)
{
    Deflection const& deflection = quality.deflection;
    IMeshTools_Parameters parameters;
    parameters.Relative = quality.isRelative && deflection.isFraction;
    double const distance =
        deflection.isFraction && !parameters.Relative ? diagonal * deflection.value : deflection.value;
    parameters.Deflection = distance >= Precision::Confusion() ? distance : Precision::Confusion();
    parameters.Angle = quality.angle >= Precision::Angular() ? quality.angle : MeshQuality().angle;
    parameters.InParallel = true;
    return parameters;
}

void AddTriangles(SceneMesh& target, BodyMesh const& mesh, TopTools_IndexedMapOfShape const& faces, IBrep const& body)
{
    std::vector<std::string> const styles = StylesOfFaces(body, static_cast<std::size_t>(faces.Extent()));
    BodySource const source(mesh);
    TriangleRuns runs(mesh.Vertices().size() / 3, true);
    for (std::size_t range = 0; range < mesh.Faces().size(); ++range)
    {
        auto const face = static_cast<std::uint32_t>(faces.FindIndex(mesh.Faces()[range].face) - 1);
        std::size_t const run = runs.RunOf(styles[face], true, false);
        std::size_t const end =
            range + 1 < mesh.Faces().size() ? mesh.Faces()[range + 1].firstTriangle : mesh.TriangleCount();
        for (std::size_t triangle = mesh.Faces()[range].firstTriangle; triangle < end; ++triangle)
        {
            std::array<TriangleCorner, 3> corners;
            for (std::size_t i = 0; i < 3; ++i)
                corners[i] = {static_cast<std::uint32_t>(mesh.Corners()[3 * triangle + i]),
                              static_cast<std::uint32_t>(mesh.CornerNormals()[3 * triangle + i]),
                              TriangleCorner::kNone};
            runs.Add(run, corners, face, source);
        }
    }
    runs.MoveInto(target);
}

std::size_t TrianglesOf(TopoDS_Shape const& shape)
{
    std::size_t count = 0;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
    {
        TopLoc_Location location;
        Handle(Poly_Triangulation) const triangulation =
            BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
        if (!triangulation.IsNull())
            count += static_cast<std::size_t>(triangulation->NbTriangles());
    }
    return count;
}

// False when those that no face brings points to have more points than that.
bool AddEdges(SceneMesh& target, BodyMesh const& mesh, IBrep const& body, CurveTolerance const& tolerance,
              std::size_t most)
{
    std::size_t own = 0;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(body.Body()->Shape(), TopAbs_EDGE, edges);
    std::vector<SceneMesh::Edge> all(static_cast<std::size_t>(edges.Extent()));
    Name(all, body.Body()->EdgeDataIds(), body.PersistentIDsMap());
    SceneLines line;
    for (int i = 1; i <= edges.Extent(); ++i)
    {
        SceneMesh::Edge& edge = all[static_cast<std::size_t>(i) - 1];
        edge.firstPoint = target.edgePoints.size() / 3;
        if (auto const* const vertices = mesh.VerticesOf(edges(i)))
        {
            for (std::uint64_t const vertex : *vertices)
                target.edgePoints.insert(target.edgePoints.end(), &mesh.Vertices()[3 * vertex],
                                         &mesh.Vertices()[3 * vertex] + 3);
        }
        else
        {
            line.points.clear();
            line.ends.clear();
            CurvePoints::AddEdge(line, edges(i), tolerance);
            target.edgePoints.insert(target.edgePoints.end(), line.points.begin(), line.points.end());
            own += line.points.size() / 3;
            if (own > most)
                return false;
        }
        edge.pointCount = target.edgePoints.size() / 3 - edge.firstPoint;
        if (edge.pointCount > 0)
            target.edges.push_back(std::move(edge));
    }
    return true;
}

}  // namespace

SceneMesh SceneMesh::Of(IPolygonMesh& mesh)
{
    SceneMesh result;
    MeshTriangles(mesh, result).Read();
    return result;
}

SceneMesh SceneMesh::Of(IBrep& body, double deflection)
{
    return Of(body, MeshQuality{{deflection, true}});
}

SceneMesh SceneMesh::Of(IBrep& body, MeshQuality const& quality)
{
    return *Of(body, quality, std::numeric_limits<std::size_t>::max());
}

std::optional<SceneMesh> SceneMesh::Of(IBrep& body, MeshQuality const& quality, std::size_t most)
{
    SceneMesh result;
    if (!body.Body())
        return result;
    TopoDS_Shape const& shape = body.Body()->Shape();
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    if (box.IsVoid())
        return result;
    MeshShape(shape, ParametersOf(quality, std::sqrt(box.SquareExtent())));
    if (TrianglesOf(shape) > most)
    {
        BRepTools::Clean(shape);
        return {};
    }
    BodyMesh const mesh(shape);
    result.facesWithoutTriangles = mesh.FacesWithoutTriangles();
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    result.faces.resize(static_cast<std::size_t>(faces.Extent()));
    Name(result.faces, body.Body()->FaceDataIds(), body.PersistentIDsMap());
    AddTriangles(result, mesh, faces, body);
    if (!AddEdges(result, mesh, body, CurvePoints::ToleranceOf(quality.deflection), most))
    {
        BRepTools::Clean(shape);
        return {};
    }
    return result;
}

void SceneMesh::TakeIdsOf(IBrep const& body)
{
    if (!body.Body())
        return;
    auto const countOf = [&](TopAbs_ShapeEnum kind)
    {
        // A shape that stands in the body twice has two segments.
        std::size_t count = 0;
        for (TopExp_Explorer explorer(body.Body()->Shape(), kind); explorer.More(); explorer.Next())
            ++count;
        return count;
    };
    if (body.Body()->FaceList().size() == faces.size() && countOf(TopAbs_FACE) == faces.size())
        Name(faces, body.Body()->FaceDataIds(), body.PersistentIDsMap());
    if (body.Body()->EdgeList().size() == edges.size())
        Name(edges, body.Body()->EdgeDataIds(), body.PersistentIDsMap());
}

}  // namespace KVR
