#pragma once

#include <NCollection_DataMap.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <cstdint>
#include <vector>

#include "framework/kernel/Export.h"

namespace KVR
{

/// The triangles of a meshed shape, face by face, as one mesh: faces that meet share the vertices of the edge between
/// them. Coordinates are those of the shape.
class KVR_KERNEL_API BodyMesh
{
public:
    /// Of faces that have no triangles there are none in the mesh; their number is in FacesWithoutTriangles.
    explicit BodyMesh(TopoDS_Shape const& shape);

    bool IsEmpty() const noexcept { return m_corners.empty(); }
    std::size_t FacesWithoutTriangles() const noexcept { return m_bareFaces; }
    std::size_t TriangleCount() const noexcept { return m_corners.size() / 3; }

    struct FaceRange
    {
        TopoDS_Shape face;
        std::size_t firstTriangle;
        bool hasTexture;
    };
    /// The faces that have triangles, each with the first of them.
    std::vector<FaceRange> const& Faces() const noexcept { return m_faces; }
    /// Three coordinates for each vertex and each normal.
    std::vector<double> const& Vertices() const noexcept { return m_vertices; }
    std::vector<double> const& Normals() const noexcept { return m_normals; }
    /// The vertex and the normal of each corner of each triangle.
    std::vector<std::uint64_t> const& Corners() const noexcept { return m_corners; }
    std::vector<std::uint64_t> const& CornerNormals() const noexcept { return m_cornerNormals; }
    /// Two texture coordinates for each normal, by the place of the normal; fewer, and none, where the faces at the end
    /// of the list have none.
    std::vector<double> const& Texture() const noexcept { return m_texture; }
    /// The vertices along each edge, each edge once.
    std::vector<std::vector<std::uint64_t>> const& Edges() const noexcept { return m_edges; }
    /// The vertices along an edge of the shape, in whatever orientation; null for one that no face has points of.
    std::vector<std::uint64_t> const* VerticesOf(TopoDS_Shape const& edge) const;

private:
    using EdgeVertices = NCollection_DataMap<TopoDS_Shape, std::size_t, TopTools_ShapeMapHasher>;

    using Indices = std::vector<std::uint64_t>;

    void AddFace(TopoDS_Face const& face);
    /// Gives the nodes of a face's triangulation that lie on the edge their vertices.
    void AddEdge(TopoDS_Edge const& edge, Handle(Poly_Triangulation) const& triangulation,
                 TopLoc_Location const& location, Indices& vertices);

    std::vector<double> m_vertices;
    std::vector<double> m_normals;
    // Two for each normal, once a face has texture vertices; corners use the entries of their normals.
    std::vector<double> m_texture;
    // Three vertices and three normals for each triangle.
    std::vector<std::uint64_t> m_corners;
    std::vector<std::uint64_t> m_cornerNormals;
    std::vector<FaceRange> m_faces;
    // The vertices of each edge, by its place in the list.
    EdgeVertices m_edgePlaces;
    std::vector<std::vector<std::uint64_t>> m_edges;
    NCollection_DataMap<TopoDS_Shape, std::uint64_t, TopTools_ShapeMapHasher> m_cornerVertices;
    std::size_t m_bareFaces = 0;
};

}  // namespace KVR
