#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "framework/api/IPolygonMesh.h"
#include "scene/SceneMesh.h"
#include "scene/geometry/PolygonSplitter.h"
#include "scene/geometry/TriangleRuns.h"

namespace KVR
{

/// Reads a mesh's polygons and segments into flat arrays. Indices are weighed against the mesh's counts.
class MeshTriangles
{
public:
    MeshTriangles(IPolygonMesh& mesh, SceneMesh& target);

    void Read();

    /// What the runs ask for.
    std::array<double, 3> VertexAt(std::uint32_t index) const;
    std::array<double, 3> NormalAt(std::uint32_t index) const;
    std::array<double, 2> TextureAt(std::uint32_t index) const;

private:
    void CheckVertices();
    void ReadMaterials();
    void ReadFaces();
    void ReadEdges();
    bool Read(EditablePolygon const& polygon, unsigned long place);
    struct Lists
    {
        EditablePolygon::IndexList vertices = {};
        /// Null where the polygon has none for each vertex.
        int const* normals = nullptr;
        int const* texture = nullptr;
        std::size_t setCount = 0;
    };
    int const* TextureOf(EditablePolygon const& polygon, Lists& lists) const;
    bool IsGood(std::uint32_t vertex) const;
    /// The corner of a polygon; false when it makes no sense. What is negative is beyond all counts.
    bool TakeCorner(Lists const& lists, std::size_t place, TriangleCorner& corner) const
    {
        corner = {};
        auto const take = [](int index, unsigned long count, std::uint32_t& target)
        {
            target = static_cast<std::uint32_t>(index);
            return static_cast<unsigned long>(index) < count;
        };
        if (!take(lists.vertices.data[place], m_vertexCount, corner.vertex) ||
            (m_hasBadVertices && !IsGood(corner.vertex)))
            return false;
        if (lists.normals && !take(lists.normals[place], m_normalCount, corner.normal))
            return false;
        return !lists.texture || take(lists.texture[place * lists.setCount], m_textureCount, corner.texture);
    }
    std::vector<PolygonSplitter::Triangle> const& Divided();
    std::size_t RunOf(unsigned long polygon, Lists const& lists);

    IPolygonMesh& m_mesh;
    SceneMesh& m_target;
    TriangleRuns m_runs;
    IPolygonMesh::PolygonMeshTypeEnum m_type;
    unsigned long m_polygonCount;
    unsigned long m_vertexCount;
    unsigned long m_normalCount;
    /// Whether a vertex has a number that makes no sense.
    bool m_hasBadVertices = false;
    /// The first set, when it is one of two dimensions.
    ITextureVertexSet* m_texture = nullptr;
    unsigned long m_textureCount = 0;
    std::vector<std::string> m_styles;
    /// The runs by style, the last one for none, and by what their corners have; none until it is asked for.
    static constexpr std::uint32_t kNoRun = TriangleCorner::kNone;
    std::vector<std::array<std::uint32_t, 4>> m_runOfStyle;
    /// Of each polygon; empty when there are no segments.
    std::vector<std::uint32_t> m_faceOfPolygon;
    std::vector<bool> m_isHidden;
    /// Of the polygon in hand.
    std::vector<TriangleCorner> m_corners;
    std::vector<std::array<double, 3>> m_points;
    PolygonSplitter m_splitter;
};

}  // namespace KVR
