#include "host/export/MeshTriangles.h"

#include <cmath>
#include <string>
#include <utility>

namespace KVR
{

namespace
{

constexpr std::uint32_t kNoPoint = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kNoGroup = std::numeric_limits<std::size_t>::max();
// What numbers of 4 bytes hold, with some room for a transform.
constexpr double kLargest = 1e30;

bool IsUsable(Triple const& point)
{
    return std::abs(point[0]) < kLargest && std::abs(point[1]) < kLargest && std::abs(point[2]) < kLargest;
}

// Of length 1; zero when it has none.
Triple Unit(Triple const& direction)
{
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    if (!std::isfinite(length) || length == 0.0)
        return {};
    return {direction[0] / length, direction[1] / length, direction[2] / length};
}

bool IsZero(Triple const& direction)
{
    return direction[0] == 0.0 && direction[1] == 0.0 && direction[2] == 0.0;
}

}  // namespace

std::size_t MeshTriangles::CornerHash::operator()(Corner const& corner) const noexcept
{
    std::uint64_t hash = corner.vertex * 0x9E3779B97F4A7C15ULL;
    for (std::int64_t const part : {corner.normal, corner.texture})
    {
        hash ^= static_cast<std::uint64_t>(part) + (hash >> 29U);
        hash *= 0xBF58476D1CE4E5B9ULL;
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

MeshTriangles::MeshTriangles(IPolygonMesh const& mesh, Tessellation& made) : m_mesh(mesh), m_made(made) {}

void MeshTriangles::Read()
{
    unsigned long const vertexCount = m_mesh.VertexCount();
    m_vertices.reserve(vertexCount);
    for (unsigned long i = 0; i < vertexCount; ++i)
    {
        PolygonVertex const vertex = m_mesh.VertexAt(i);
        m_vertices.push_back({vertex.x, vertex.y, vertex.z});
    }
    unsigned long const normalCount = m_mesh.NormalCount();
    m_meshNormals.reserve(normalCount);
    for (unsigned long i = 0; i < normalCount; ++i)
    {
        Normal const normal = m_mesh.NormalAt(i);
        m_meshNormals.push_back(Unit({normal.x, normal.y, normal.z}));
    }
    m_firstUses.resize(vertexCount);
    m_made.points.reserve(vertexCount);
    if (normalCount > 0)
        m_made.normals.reserve(vertexCount);
    if (m_mesh.PolygonMaterials(m_materials) != kIsValueSpecified_Yes)
        m_materials = {};
    m_groupOfMaterial.assign(m_materials.Size() + 1, kNoGroup);
    ReadHidden();
    ReadTexture();
    unsigned long const polygonCount = m_mesh.PolygonCount();
    for (unsigned long i = 0; i < polygonCount; ++i)
        ReadPolygon(i);
    std::erase_if(m_made.groups, [](Tessellation::Group const& group) { return group.corners.empty(); });
}

void MeshTriangles::ReadHidden()
{
    unsigned long const count = m_mesh.MeshSegmentCount();
    for (unsigned long i = 0; i < count; ++i)
    {
        bool isVisible = true;
        PolygonIndexSet polygons;
        if (m_mesh.MeshSegmentVisibilityAt(i, isVisible) != kIsValueSpecified_Yes || isVisible ||
            m_mesh.MeshSegmentAt(i, polygons) != kIsValueSpecified_Yes)
            continue;
        m_isHidden.resize(m_mesh.PolygonCount());
        for (unsigned int const polygon : polygons.Indices())
            if (polygon < m_isHidden.size())
                m_isHidden[polygon] = true;
    }
}

// Formats have place for the first set of two dimensions.
void MeshTriangles::ReadTexture()
{
    if (m_mesh.TextureVertexSetCount() == 0)
        return;
    ITextureVertexSet const* const set = m_mesh.TextureVertexSetAt(0);
    if (set && set->VertexDimension() == 2 && set->VertexCount() > 0)
        m_texture = set;
}

void MeshTriangles::ReadPolygon(unsigned long index)
{
    if (index < m_isHidden.size() && m_isHidden[index])
        return;
    EditablePolygon const* polygon = nullptr;
    if (m_mesh.PolygonAt(index, polygon) != kIsValueSpecified_Yes || !polygon || !ReadCorners(*polygon, index))
    {
        ++m_badPolygons;
        return;
    }
    m_points.clear();
    for (Corner const& corner : m_corners)
        m_points.push_back(PointOf(corner));
    Tessellation::Group& group = GroupOf(index);
    std::size_t const count = m_points.size();
    switch (m_mesh.MeshType())
    {
        case IPolygonMesh::kPolygonMeshType_Strip:
            for (std::size_t i = 0; i + 2 < count; ++i)
                AddTriangle(group, i + i % 2, i + 1 - i % 2, i + 2);
            return;
        case IPolygonMesh::kPolygonMeshType_Fan:
            for (std::size_t i = 1; i + 1 < count; ++i)
                AddTriangle(group, 0, i, i + 1);
            return;
        default:
            break;
    }
    if (count == 3)
    {
        AddTriangle(group, 0, 1, 2);
        return;
    }
    std::span<std::uint32_t const> const triangles = m_triangulation.Cut(m_places);
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3)
        AddTriangle(group, triangles[i], triangles[i + 1], triangles[i + 2]);
}

bool MeshTriangles::ReadCorners(EditablePolygon const& polygon, unsigned long index)
{
    EditablePolygon::IndexList const vertices = polygon.VertexIndices();
    if (!vertices.data || vertices.count < 3)
        return false;
    auto const count = static_cast<std::size_t>(vertices.count);
    m_corners.resize(count);
    m_places.resize(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        int const vertex = vertices.data[i];
        if (vertex < 0 || static_cast<std::size_t>(vertex) >= m_vertices.size())
            return false;
        m_places[i] = m_vertices[static_cast<std::size_t>(vertex)];
        if (!IsUsable(m_places[i]))
            return false;
        m_corners[i] = {static_cast<std::uint32_t>(vertex), kNone, kNone};
    }
    if (!m_meshNormals.empty())
    {
        EditablePolygon::IndexList const normals = polygon.NormalIndices();
        bool needsFlat = false;
        for (std::size_t i = 0; i < count; ++i)
        {
            int const normal = normals.data && i < static_cast<std::size_t>(normals.count) ? normals.data[i] : -1;
            bool const isThere = normal >= 0 && static_cast<std::size_t>(normal) < m_meshNormals.size() &&
                                 !IsZero(m_meshNormals[static_cast<std::size_t>(normal)]);
            m_corners[i].normal = isThere ? normal : -2 - static_cast<std::int64_t>(index);
            needsFlat = needsFlat || !isThere;
        }
        if (needsFlat)
        {
            m_flatNormal = Unit(AreaVector(m_places));
            if (IsZero(m_flatNormal))
                m_flatNormal = {0.0, 0.0, 1.0};
            else if (m_mesh.MeshOrientation() == IPolygonMesh::kPolygonMeshOrientation_ClockWise)
                m_flatNormal = {-m_flatNormal[0], -m_flatNormal[1], -m_flatNormal[2]};
        }
    }
    if (m_texture)
    {
        EditablePolygon::IndexList const sets = polygon.TextureSetIndices();
        EditablePolygon::IndexList const texture = polygon.TextureVertexIndices();
        if (sets.data && sets.count > 0 && sets.data[0] == 0 && texture.data)
            for (std::size_t i = 0; i < count; ++i)
            {
                std::size_t const place = i * static_cast<std::size_t>(sets.count);
                if (place < static_cast<std::size_t>(texture.count) && texture.data[place] >= 0)
                    m_corners[i].texture = texture.data[place];
            }
    }
    return true;
}

Tessellation::Group& MeshTriangles::GroupOf(unsigned long index)
{
    std::size_t slot = m_groupOfMaterial.size() - 1;
    unsigned int material = 0;
    if (slot > 0 && m_mesh.PolygonMaterialIndexAt(index, material) == kIsValueSpecified_Yes && material < slot)
        slot = material;
    std::size_t& group = m_groupOfMaterial[slot];
    if (group == kNoGroup)
    {
        group = m_made.groups.size();
        m_made.groups.emplace_back();
        if (slot + 1 < m_groupOfMaterial.size() && !m_materials.At(slot).IsEmpty())
            m_made.groups.back().style = std::string(m_materials.At(slot).At(0).View());
    }
    return m_made.groups[group];
}

std::uint32_t MeshTriangles::PointOf(Corner const& corner)
{
    FirstUse& first = m_firstUses[corner.vertex];
    if (first.point == kNoPoint)
    {
        first = {corner.normal, corner.texture, AddPoint(corner)};
        return first.point;
    }
    if (first.normal == corner.normal && first.texture == corner.texture)
        return first.point;
    auto const [entry, isNew] = m_furtherUses.try_emplace(corner, 0);
    if (isNew)
        entry->second = AddPoint(corner);
    return entry->second;
}

std::uint32_t MeshTriangles::AddPoint(Corner const& corner)
{
    m_made.points.push_back(m_vertices[corner.vertex]);
    if (!m_meshNormals.empty())
        m_made.normals.push_back(NormalOf(corner.normal));
    if (m_texture)
    {
        MeshTextureVertex2D vertex(0.0, 0.0);
        if (corner.texture != kNone)
            m_texture->VertexAt(static_cast<unsigned long>(corner.texture), vertex);
        bool const isUsable = std::abs(vertex.U()) < kLargest && std::abs(vertex.V()) < kLargest;
        m_made.texture.push_back({isUsable ? static_cast<float>(vertex.U()) : 0.0F,
                                  isUsable ? static_cast<float>(vertex.V()) : 0.0F});
    }
    return static_cast<std::uint32_t>(m_made.points.size() - 1);
}

Triple MeshTriangles::NormalOf(std::int64_t normal) const
{
    return normal >= 0 ? m_meshNormals[static_cast<std::size_t>(normal)] : m_flatNormal;
}

void MeshTriangles::AddTriangle(Tessellation::Group& group, std::size_t a, std::size_t b, std::size_t c)
{
    if (m_mesh.MeshOrientation() == IPolygonMesh::kPolygonMeshOrientation_ClockWise)
        std::swap(b, c);
    group.corners.push_back(m_points[a]);
    group.corners.push_back(m_points[b]);
    group.corners.push_back(m_points[c]);
}

}  // namespace KVR
