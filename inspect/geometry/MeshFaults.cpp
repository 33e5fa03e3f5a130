#include "inspect/geometry/MeshFaults.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "framework/api/IPolygonMesh.h"

namespace KVR
{

namespace
{

using Vector = std::array<double, 3>;

// A height by the longest side below which a triangle has no area: what rounding makes of points on a line.
constexpr double kFlat = 1e-10;
// Beyond this a triangle is wide enough for its plane to say something about its normals.
constexpr double kWide = 1e-4;
// The cosine from which on a normal points against its triangle: coarse triangles on tight bends come near to 0.
constexpr double kAgainst = -0.3;

Vector Difference(Vector const& a, Vector const& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector Cross(Vector const& a, Vector const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(Vector const& a, Vector const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double Length(Vector const& a)
{
    return std::hypot(a[0], a[1], a[2]);
}

bool IsFinite(Vector const& a)
{
    return std::all_of(a.begin(), a.end(), [](double x) { return std::isfinite(x); });
}

bool AreBelow(EditablePolygon::IndexList const& list, std::size_t count)
{
    std::span<int const> const indices(list.data, static_cast<std::size_t>(std::max(list.count, 0)));
    return std::all_of(indices.begin(), indices.end(),
                       [&](int index) { return index >= 0 && static_cast<std::size_t>(index) < count; });
}

class Search
{
public:
    explicit Search(IPolygonMesh const& mesh)
        : m_mesh(mesh),
          m_isStrip(mesh.MeshType() == IPolygonMesh::kPolygonMeshType_Strip),
          m_isFan(mesh.MeshType() == IPolygonMesh::kPolygonMeshType_Fan),
          m_normalCount(mesh.NormalCount())
    {
    }

    MeshFaults Run()
    {
        TakeVertices();
        for (unsigned long i = 0; i < m_mesh.TextureVertexSetCount(); ++i)
        {
            ITextureVertexSet const* const set = m_mesh.TextureVertexSetAt(i);
            m_textureCounts.push_back(set ? set->VertexCount() : 0);
        }
        for (unsigned long i = 0; i < m_mesh.PolygonCount(); ++i)
        {
            EditablePolygon const* polygon = nullptr;
            if (m_mesh.PolygonAt(i, polygon) == kIsValueSpecified_Yes && polygon)
                Look(*polygon, i);
        }
        LookAtSegments();
        return m_faults;
    }

private:
    void TakeVertices()
    {
        m_vertices.reserve(m_mesh.VertexCount());
        for (unsigned long i = 0; i < m_mesh.VertexCount(); ++i)
        {
            PolygonVertex const vertex = m_mesh.VertexAt(i);
            m_vertices.push_back({vertex.x, vertex.y, vertex.z});
            if (!IsFinite(m_vertices.back()))
                m_faults.numbers.Add(i);
        }
    }

    void Look(EditablePolygon const& polygon, std::size_t place)
    {
        EditablePolygon::IndexList const vertices = polygon.VertexIndices();
        EditablePolygon::IndexList const normals = polygon.NormalIndices();
        LookAtTextures(polygon, place);
        bool const hasNormals = normals.data && AreBelow(normals, m_normalCount) && normals.count == vertices.count;
        if (normals.data && !AreBelow(normals, m_normalCount))
            m_faults.normalIndices.Add(place);
        if (hasNormals)
            TakeNormals(normals, place);
        else
            m_normals.clear();
        if (!vertices.data || vertices.count < 3)
            return m_faults.tooFewCorners.Add(place);
        if (!AreBelow(vertices, m_vertices.size()))
            return m_faults.vertexIndices.Add(place);
        m_isDegenerate = m_isTurned = false;
        m_corners.assign(vertices.data, vertices.data + vertices.count);
        if (m_isStrip || m_isFan)
            LookAtTriangles();
        else
            LookAtOutline();
        if (m_isDegenerate)
            m_faults.degenerate.Add(place);
        if (m_isTurned)
            m_faults.turnedNormals.Add(place);
    }

    void LookAtTextures(EditablePolygon const& polygon, std::size_t place)
    {
        EditablePolygon::IndexList const sets = polygon.TextureSetIndices();
        EditablePolygon::IndexList const indices = polygon.TextureVertexIndices();
        if (!sets.data || sets.count <= 0 || !indices.data)
            return;
        for (int i = 0; i < indices.count; ++i)
        {
            int const set = sets.data[i % sets.count];
            bool const isThere =
                set >= 0 && static_cast<std::size_t>(set) < m_textureCounts.size() && indices.data[i] >= 0 &&
                static_cast<std::size_t>(indices.data[i]) < m_textureCounts[static_cast<std::size_t>(set)];
            if (!isThere)
                return m_faults.textureIndices.Add(place);
        }
    }

    void TakeNormals(EditablePolygon::IndexList const& indices, std::size_t place)
    {
        m_normals.clear();
        bool isZero = false;
        for (int i = 0; i < indices.count; ++i)
        {
            Normal const normal = m_mesh.NormalAt(static_cast<unsigned long>(indices.data[i]));
            Vector vector{normal.x, normal.y, normal.z};
            double const length = Length(vector);
            bool const isGood = std::isfinite(length) && length > 0.0;
            for (double& x : vector)
                x = isGood ? x / length : 0.0;
            isZero = isZero || !isGood;
            m_normals.push_back(vector);
        }
        if (isZero)
            m_faults.zeroNormals.Add(place);
    }

    void LookAtTriangles()
    {
        for (std::size_t i = 0; i + 2 < m_corners.size(); ++i)
        {
            std::size_t const a = m_isFan ? 0 : i;
            bool const runsBack = m_isStrip && i % 2 == 1;
            std::array<std::size_t, 3> const corners{a, runsBack ? i + 2 : i + 1, runsBack ? i + 1 : i + 2};
            int const u = m_corners[corners[0]];
            int const v = m_corners[corners[1]];
            int const w = m_corners[corners[2]];
            if (u != v && v != w && w != u)
                LookAt(corners);
        }
    }

    // A triangle, or a face with any number of corners, whose plane is that of its directed area.
    void LookAtOutline()
    {
        m_places.resize(m_corners.size());
        for (std::size_t i = 0; i < m_places.size(); ++i)
            m_places[i] = i;
        LookAt(m_places);
    }

    void LookAt(std::span<std::size_t const> corners)
    {
        auto const at = [&](std::size_t i) -> Vector const&
        { return m_vertices[static_cast<std::size_t>(m_corners[corners[i]])]; };
        Vector area{};
        double longest = 0.0;
        for (std::size_t i = 0; i < corners.size(); ++i)
        {
            Vector const side = Difference(at(i), at(0));
            Vector const next = Difference(at((i + 1) % corners.size()), at(0));
            Vector const part = Cross(side, next);
            for (std::size_t axis = 0; axis < 3; ++axis)
                area[axis] += part[axis];
            longest = std::max(longest, Length(Difference(next, side)));
        }
        // What is no number is told by itself. It may vanish in a length, but not in all coordinates.
        if (!IsFinite(area) || !std::isfinite(longest))
            return;
        double const size = Length(area);
        m_isDegenerate = m_isDegenerate || size <= kFlat * longest * longest;
        if (m_normals.empty() || size <= kWide * longest * longest)
            return;
        m_isTurned = m_isTurned ||
                     std::any_of(corners.begin(), corners.end(),
                                 [&](std::size_t corner) { return Dot(m_normals[corner], area) < kAgainst * size; });
    }

    void LookAtSegments()
    {
        for (unsigned long i = 0; i < m_mesh.FaceSegmentCount(); ++i)
        {
            FaceSegmentInfo segment;
            if (m_mesh.FaceSegmentAt(i, segment) != kIsValueSpecified_Yes)
                continue;
            std::vector<unsigned int> const& polygons = segment.PolygonIndices().Indices();
            if (std::any_of(polygons.begin(), polygons.end(),
                            [&](unsigned int polygon) { return polygon >= m_mesh.PolygonCount(); }))
                m_faults.faceSegments.Add(i);
        }
        for (unsigned long i = 0; i < m_mesh.EdgeSegmentCount(); ++i)
        {
            EdgeSegmentInfo segment;
            if (m_mesh.EdgeSegmentInfoAt(i, segment) != kIsValueSpecified_Yes)
                continue;
            std::vector<int> const& vertices = segment.VertexIndices().Indices();
            if (!AreBelow({vertices.data(), static_cast<int>(vertices.size())}, m_vertices.size()))
                m_faults.edgeSegments.Add(i);
        }
    }

    IPolygonMesh const& m_mesh;
    bool const m_isStrip;
    bool const m_isFan;
    std::size_t const m_normalCount;
    std::vector<std::size_t> m_textureCounts;
    std::vector<Vector> m_vertices;
    MeshFaults m_faults;
    // Of the polygon that is looked at: its vertices, the directions of its normals, which are none where they are
    // zero.
    std::vector<int> m_corners;
    std::vector<Vector> m_normals;
    std::vector<std::size_t> m_places;
    bool m_isDegenerate = false;
    bool m_isTurned = false;
};

}  // namespace

MeshFaults MeshFaults::Of(IPolygonMesh const& mesh)
{
    return Search(mesh).Run();
}

}  // namespace KVR
