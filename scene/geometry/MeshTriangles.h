#pragma once

#include <array>
#include <cstdint>
#include <optional>
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
    /// The corners of a polygon; false when they make no sense.
    bool TakeCorners(EditablePolygon const& polygon);
    std::vector<PolygonSplitter::Triangle> const& Divided();
    std::size_t RunOf(unsigned long polygon);

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
    std::vector<std::array<std::optional<std::size_t>, 4>> m_runOfStyle;
    /// Of each polygon; empty when there are no segments.
    std::vector<std::uint32_t> m_faceOfPolygon;
    std::vector<bool> m_isHidden;
    /// Of the polygon in hand.
    std::vector<TriangleCorner> m_corners;
    bool m_hasNormals = false;
    bool m_hasTexture = false;
    std::vector<std::array<double, 3>> m_points;
    PolygonSplitter m_splitter;
};

}  // namespace KVR
