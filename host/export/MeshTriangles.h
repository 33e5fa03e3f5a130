#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <unordered_map>
#include <vector>

#include "framework/api/IPolygonMesh.h"
#include "host/export/Tessellation.h"

namespace KVR
{

/// The triangles of a mesh. A vertex that has several normals or texture vertices becomes as many points.
class MeshTriangles
{
public:
    MeshTriangles(IPolygonMesh const& mesh, Tessellation& made);

    void Read();

    /// Polygons that were left out because their indices or coordinates are none.
    unsigned long long BadPolygons() const noexcept { return m_badPolygons; }
    unsigned long long TooLargePolygons() const noexcept { return m_triangulation.TooLarge(); }

private:
    static constexpr std::int64_t kNone = -1;

    /// What a point is made of. Normals below kNone are those of polygons.
    struct Corner
    {
        std::uint32_t vertex = 0;
        std::int64_t normal = kNone;
        std::int64_t texture = kNone;

        bool operator==(Corner const&) const = default;
    };
    struct CornerHash
    {
        std::size_t operator()(Corner const& corner) const noexcept;
    };
    struct FirstUse
    {
        std::int64_t normal = kNone;
        std::int64_t texture = kNone;
        std::uint32_t point = std::numeric_limits<std::uint32_t>::max();
    };

    void ReadHidden();
    void ReadTexture();
    void ReadPolygon(unsigned long index);
    bool ReadCorners(EditablePolygon const& polygon, unsigned long index);
    Tessellation::Group& GroupOf(unsigned long index);
    std::uint32_t PointOf(Corner const& corner);
    std::uint32_t AddPoint(Corner const& corner);
    Triple NormalOf(std::int64_t normal) const;
    void AddTriangle(Tessellation::Group& group, std::size_t a, std::size_t b, std::size_t c);

    IPolygonMesh const& m_mesh;
    Tessellation& m_made;
    std::vector<Triple> m_vertices;
    std::vector<Triple> m_meshNormals;
    std::vector<FirstUse> m_firstUses;
    std::unordered_map<Corner, std::uint32_t, CornerHash> m_furtherUses;
    std::vector<bool> m_isHidden;
    IdSetSet m_materials;
    /// The group of each material, and behind them that of none.
    std::vector<std::size_t> m_groupOfMaterial;
    std::vector<Corner> m_corners;
    std::vector<Triple> m_places;
    std::vector<std::uint32_t> m_points;
    Triangulation m_triangulation;
    ITextureVertexSet const* m_texture = nullptr;
    Triple m_flatNormal{};
    unsigned long long m_badPolygons = 0;
};

}  // namespace KVR
