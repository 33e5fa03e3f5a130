#include "exchange/export/MeshShell.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRep_Builder.hxx>
#include <Geom_Plane.hxx>
#include <Precision.hxx>
#include <TopAbs_Orientation.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Vertex.hxx>
#include <TopoDS_Wire.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Pln.hxx>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "framework/api/IPolygonMesh.h"
#include "framework/api/Polygon.h"

namespace KVR
{

namespace
{

class ShellMaker
{
public:
    explicit ShellMaker(IPolygonMesh const& mesh) : m_mesh(mesh) { m_builder.MakeShell(m_shell); }

    void AddTriangle(int a, int b, int c)
    {
        gp_Pnt const corners[] = {PointOf(a), PointOf(b), PointOf(c)};
        gp_Vec const normal = gp_Vec(corners[0], corners[1]).Crossed(gp_Vec(corners[0], corners[2]));
        double const longest = std::max(
            {corners[0].Distance(corners[1]), corners[1].Distance(corners[2]), corners[2].Distance(corners[0])});
        // Where the height is nothing, there is no plane.
        if (!(normal.Magnitude() > longest * Precision::Confusion()))
            return;
        int const places[] = {PlaceOf(corners[0]), PlaceOf(corners[1]), PlaceOf(corners[2])};
        TopoDS_Wire wire;
        m_builder.MakeWire(wire);
        for (int i = 0; i < 3; ++i)
            m_builder.Add(wire, EdgeOf(places[i], places[(i + 1) % 3]));
        wire.Closed(Standard_True);
        TopoDS_Face face;
        opencascade::handle<Geom_Plane> const plane = new Geom_Plane(gp_Pln(corners[0], gp_Dir(normal)));
        m_builder.MakeFace(face, plane, Precision::Confusion());
        m_builder.Add(face, wire);
        m_builder.Add(m_shell, face);
        m_isEmpty = false;
    }

    TopoDS_Shape Take() const { return m_isEmpty ? TopoDS_Shape() : TopoDS_Shape(m_shell); }

private:
    using Triple = std::tuple<double, double, double>;

    gp_Pnt PointOf(int index) const
    {
        PolygonVertex const vertex = m_mesh.VertexAt(static_cast<unsigned long>(index));
        return {vertex.x, vertex.y, vertex.z};
    }

    // Corners in the same point are one vertex, also when the mesh has them apart for their normals.
    int PlaceOf(gp_Pnt const& point)
    {
        auto const [found, isNew] =
            m_places.emplace(Triple(point.X(), point.Y(), point.Z()), static_cast<int>(m_vertices.size()));
        if (isNew)
        {
            TopoDS_Vertex vertex;
            m_builder.MakeVertex(vertex, point, Precision::Confusion());
            m_vertices.push_back(vertex);
        }
        return found->second;
    }

    TopoDS_Shape EdgeOf(int from, int to)
    {
        auto const key = std::minmax(from, to);
        auto const [found, isNew] = m_edges.emplace(key, TopoDS_Edge());
        if (isNew)
        {
            BRepBuilderAPI_MakeEdge edge(m_vertices[static_cast<std::size_t>(key.first)],
                                         m_vertices[static_cast<std::size_t>(key.second)]);
            found->second = edge.Edge();
        }
        return found->second.Oriented(from < to ? TopAbs_FORWARD : TopAbs_REVERSED);
    }

    IPolygonMesh const& m_mesh;
    BRep_Builder m_builder;
    TopoDS_Shell m_shell;
    bool m_isEmpty = true;
    std::map<Triple, int> m_places;
    std::vector<TopoDS_Vertex> m_vertices;
    std::map<std::pair<int, int>, TopoDS_Edge> m_edges;
};

}  // namespace

TopoDS_Shape MeshShell(IPolygonMesh const& mesh)
{
    ShellMaker maker(mesh);
    int const vertices = static_cast<int>(mesh.VertexCount());
    auto const isThere = [&](int index) { return index >= 0 && index < vertices; };
    bool const isClockwise = mesh.MeshOrientation() == IPolygonMesh::kPolygonMeshOrientation_ClockWise;
    bool const isStrip = mesh.MeshType() == IPolygonMesh::kPolygonMeshType_Strip;
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        EditablePolygon const* polygon = nullptr;
        if (mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon)
            continue;
        EditablePolygon::IndexList const corners = polygon->VertexIndices();
        for (int corner = 2; corner < corners.count; ++corner)
        {
            int const a = corners.data[isStrip ? corner - 2 : 0];
            int b = corners.data[corner - 1];
            int c = corners.data[corner];
            // Every other triangle of a strip runs the other way.
            if (isClockwise != (isStrip && corner % 2 == 1))
                std::swap(b, c);
            if (isThere(a) && isThere(b) && isThere(c))
                maker.AddTriangle(a, b, c);
        }
    }
    return maker.Take();
}

}  // namespace KVR
