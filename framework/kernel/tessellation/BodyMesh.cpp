#include "framework/kernel/tessellation/BodyMesh.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepLProp_SLProps.hxx>
#include <BRep_Tool.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <Precision.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <array>
#include <gp_Trsf.hxx>
#include <limits>

namespace KVR
{

namespace
{

constexpr std::uint64_t kNoVertex = std::numeric_limits<std::uint64_t>::max();

void Put(std::vector<double>& list, gp_XYZ const& value)
{
    list.insert(list.end(), {value.X() + 0.0, value.Y() + 0.0, value.Z() + 0.0});
}

// The normals at a triangulation's nodes, outward, in the coordinates of the face.
std::vector<gp_XYZ> NormalsOf(TopoDS_Face const& face, Poly_Triangulation const& triangulation, gp_Trsf const& place)
{
    int const count = triangulation.NbNodes();
    std::vector<gp_XYZ> normals(static_cast<std::size_t>(count), gp_XYZ(0.0, 0.0, 0.0));
    bool const isReversed = face.Orientation() == TopAbs_REVERSED;
    double const outward = isReversed ? -1.0 : 1.0;
    // A mirrored place turns over what is made of two directions, but no normal that is given.
    double const sign = place.IsNegative() ? -outward : outward;
    TopLoc_Location location;
    bool const hasSurface = !BRep_Tool::Surface(face, location).IsNull() && triangulation.HasUVNodes();
    std::vector<bool> isMissing(normals.size(), !hasSurface);
    bool isAnyMissing = !hasSurface;
    if (hasSurface)
    {
        BRepAdaptor_Surface const surface(face, false);
        BRepLProp_SLProps properties(surface, 1, Precision::Confusion());
        bool const isPlane = surface.GetType() == GeomAbs_Plane;
        for (int node = 1; node <= count; ++node)
        {
            auto const place0 = static_cast<std::size_t>(node) - 1;
            if (isPlane && node > 1)
            {
                normals[place0] = normals.front();
                isMissing[place0] = isMissing.front();
                continue;
            }
            gp_Pnt2d const uv = triangulation.UVNode(node);
            properties.SetParameters(uv.X(), uv.Y());
            if (properties.IsNormalDefined())
                normals[place0] = properties.Normal().XYZ() * sign;
            else
                isMissing[place0] = isAnyMissing = true;
        }
    }
    else if (triangulation.HasNormals())
    {
        for (int node = 1; node <= count; ++node)
            normals[static_cast<std::size_t>(node) - 1] = triangulation.Normal(node).Transformed(place).XYZ() * outward;
        return normals;
    }
    if (!isAnyMissing)
        return normals;
    // Where the surface has no normal, such as at a cone's tip, that of the triangles around.
    for (int i = 1; i <= triangulation.NbTriangles(); ++i)
    {
        std::array<int, 3> n{};
        triangulation.Triangle(i).Get(n[0], n[1], n[2]);
        gp_XYZ const a = triangulation.Node(n[0]).Transformed(place).XYZ();
        gp_XYZ const b = triangulation.Node(n[1]).Transformed(place).XYZ();
        gp_XYZ const c = triangulation.Node(n[2]).Transformed(place).XYZ();
        gp_XYZ const normal = (b - a).Crossed(c - a) * sign;
        for (int const node : n)
            if (isMissing[static_cast<std::size_t>(node) - 1])
                normals[static_cast<std::size_t>(node) - 1] += normal;
    }
    for (std::size_t i = 0; i < normals.size(); ++i)
        if (isMissing[i])
        {
            double const length = normals[i].Modulus();
            normals[i] = length > 0.0 ? normals[i] / length : gp_XYZ(0.0, 0.0, 1.0);
        }
    return normals;
}

// Open CASCADE leaves edges of some faces that it fails at with nodes that there are not.
bool IsOf(Poly_PolygonOnTriangulation const& polygon, Poly_Triangulation const& triangulation)
{
    for (int i = 1; i <= polygon.NbNodes(); ++i)
        if (polygon.Node(i) < 1 || polygon.Node(i) > triangulation.NbNodes())
            return false;
    return true;
}

}  // namespace

BodyMesh::BodyMesh(TopoDS_Shape const& shape)
{
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
        AddFace(TopoDS::Face(face.Current()));
}

std::vector<std::uint64_t> const* BodyMesh::VerticesOf(TopoDS_Shape const& edge) const
{
    std::size_t const* const place = m_edgePlaces.Seek(edge);
    return place ? &m_edges[*place] : nullptr;
}

void BodyMesh::AddFace(TopoDS_Face const& face)
{
    TopLoc_Location location;
    Handle(Poly_Triangulation) const triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull() || triangulation->NbTriangles() == 0)
    {
        ++m_bareFaces;
        return;
    }
    // The vertex of each node.
    Indices vertices(static_cast<std::size_t>(triangulation->NbNodes()), kNoVertex);
    for (TopExp_Explorer edge(face, TopAbs_EDGE); edge.More(); edge.Next())
        AddEdge(TopoDS::Edge(edge.Current()), triangulation, location, vertices);
    gp_Trsf const place = location.Transformation();
    std::uint64_t const firstNormal = m_normals.size() / 3;
    // With a surface they are its parameters, and nobody's texture.
    TopLoc_Location surfaceLocation;
    bool const hasTexture = triangulation->HasUVNodes() && BRep_Tool::Surface(face, surfaceLocation).IsNull();
    if (hasTexture)
    {
        m_texture.resize(2 * firstNormal, 0.0);
        for (int node = 1; node <= triangulation->NbNodes(); ++node)
            m_texture.insert(m_texture.end(), {triangulation->UVNode(node).X(), triangulation->UVNode(node).Y()});
    }
    for (gp_XYZ const& normal : NormalsOf(face, *triangulation, place))
        Put(m_normals, normal);
    for (int node = 1; node <= triangulation->NbNodes(); ++node)
    {
        std::uint64_t& vertex = vertices[static_cast<std::size_t>(node) - 1];
        if (vertex != kNoVertex)
            continue;
        vertex = m_vertices.size() / 3;
        Put(m_vertices, triangulation->Node(node).Transformed(place).XYZ());
    }
    m_faces.push_back({face, TriangleCount(), hasTexture});
    // A mirrored place turns triangles over as a reversed face does.
    bool const turns = (face.Orientation() == TopAbs_REVERSED) != place.IsNegative();
    for (int i = 1; i <= triangulation->NbTriangles(); ++i)
    {
        std::array<int, 3> n{};
        triangulation->Triangle(i).Get(n[0], n[1], n[2]);
        if (turns)
            std::swap(n[1], n[2]);
        for (int const node : n)
        {
            m_corners.push_back(vertices[static_cast<std::size_t>(node) - 1]);
            m_cornerNormals.push_back(firstNormal + static_cast<std::uint64_t>(node) - 1);
        }
    }
}

void BodyMesh::AddEdge(TopoDS_Edge const& edge, Handle(Poly_Triangulation) const& triangulation,
                       TopLoc_Location const& location, Indices& vertices)
{
    Handle(Poly_PolygonOnTriangulation) const polygon =
        BRep_Tool::PolygonOnTriangulation(edge, triangulation, location);
    if (polygon.IsNull() || polygon->NbNodes() < 2 || !IsOf(*polygon, *triangulation))
        return;
    auto const nodeCount = static_cast<std::size_t>(polygon->NbNodes());
    auto const slot = [&](std::size_t i) -> std::uint64_t&
    { return vertices[static_cast<std::size_t>(polygon->Node(static_cast<int>(i) + 1)) - 1]; };
    if (std::size_t const* const known = m_edgePlaces.Seek(edge))
    {
        Indices const& list = m_edges[*known];
        if (list.size() == nodeCount)
            for (std::size_t i = 0; i < nodeCount; ++i)
                if (slot(i) == kNoVertex)
                    slot(i) = list[i];
        return;
    }
    if (BRep_Tool::Degenerated(edge))
        return;
    // The ends of an edge are those of its neighbours.
    TopoDS_Vertex ends[2];
    TopExp::Vertices(TopoDS::Edge(edge.Oriented(TopAbs_FORWARD)), ends[0], ends[1]);
    gp_Trsf const place = location.Transformation();
    Indices list(nodeCount);
    for (std::size_t i = 0; i < nodeCount; ++i)
    {
        bool const isEnd = i == 0 || i + 1 == nodeCount;
        TopoDS_Shape const end = isEnd ? ends[i == 0 ? 0 : 1] : TopoDS_Shape();
        std::uint64_t const* const corner = end.IsNull() ? nullptr : m_cornerVertices.Seek(end);
        std::uint64_t& vertex = slot(i);
        if (vertex == kNoVertex && corner)
            vertex = *corner;
        if (vertex == kNoVertex)
        {
            vertex = m_vertices.size() / 3;
            Put(m_vertices, triangulation->Node(polygon->Node(static_cast<int>(i) + 1)).Transformed(place).XYZ());
        }
        if (!end.IsNull() && !corner)
            m_cornerVertices.Bind(end, vertex);
        list[i] = vertex;
    }
    m_edgePlaces.Bind(edge, m_edges.size());
    m_edges.push_back(std::move(list));
}

}  // namespace KVR
