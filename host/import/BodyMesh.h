#pragma once

#include <NCollection_DataMap.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <cstdint>
#include <functional>
#include <vector>

#include "authoring/MeshStoreWriter.h"

namespace KVR
{

/// The triangles of a meshed shape, face by face, as one mesh: faces that meet share the vertices of the edge between
/// them. Coordinates are those of the shape.
class BodyMesh
{
public:
    /// Of faces that have no triangles there are none in the mesh; their number is in FacesWithoutTriangles.
    explicit BodyMesh(TopoDS_Shape const& shape);

    bool IsEmpty() const noexcept { return m_corners.empty(); }
    std::size_t FacesWithoutTriangles() const noexcept { return m_bareFaces; }
    std::size_t TriangleCount() const noexcept { return m_corners.size() / 3; }

    /// Writes the mesh and its segments: one of polygons for each face that has triangles, in their order, and one of
    /// vertices for each edge. `styleOf` and `isVisible` are asked for each such face.
    void Write(UTF8String const& id, Authoring::MeshStoreWriter& store, Authoring::SegmentStoreWriter& segments,
               std::function<UTF8String(TopoDS_Shape const&)> const& styleOf,
               std::function<bool(TopoDS_Shape const&)> const& isVisible) const;

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

private:
    using EdgeVertices = NCollection_DataMap<TopoDS_Shape, std::size_t, TopTools_ShapeMapHasher>;

    void AddFace(TopoDS_Face const& face);

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
    std::vector<Authoring::SegmentStoreWriter::Indices> m_edges;
    NCollection_DataMap<TopoDS_Shape, std::uint64_t, TopTools_ShapeMapHasher> m_cornerVertices;
    std::size_t m_bareFaces = 0;
};

}  // namespace KVR
