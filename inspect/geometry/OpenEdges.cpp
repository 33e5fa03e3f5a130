#include "inspect/geometry/OpenEdges.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "framework/api/IPolygonMesh.h"

namespace KVR
{

namespace
{

// A side between two points, run through upwards or downwards.
struct Side
{
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t polygon;
    bool isUpwards;

    bool IsAlong(Side const& other) const { return low == other.low && high == other.high; }
};

using Point = std::array<double, 3>;

// For each vertex the first one in the same place.
std::vector<std::uint32_t> PlacesOf(IPolygonMesh const& mesh)
{
    std::vector<std::pair<Point, std::uint32_t>> points;
    points.reserve(mesh.VertexCount());
    for (unsigned long i = 0; i < mesh.VertexCount(); ++i)
    {
        PolygonVertex const vertex = mesh.VertexAt(i);
        // Adding 0 makes one zero of the two.
        points.emplace_back(Point{vertex.x + 0.0, vertex.y + 0.0, vertex.z + 0.0}, static_cast<std::uint32_t>(i));
    }
    // What is no number has no order of its own.
    std::erase_if(points,
                  [](auto const& entry) {
                      return entry.first[0] != entry.first[0] || entry.first[1] != entry.first[1] ||
                             entry.first[2] != entry.first[2];
                  });
    std::sort(points.begin(), points.end());
    std::vector<std::uint32_t> places(mesh.VertexCount());
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = static_cast<std::uint32_t>(i);
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i].first == points[i - 1].first)
            places[points[i].second] = places[points[i - 1].second];
    return places;
}

class Sides
{
public:
    explicit Sides(IPolygonMesh const& mesh) : m_mesh(mesh), m_places(PlacesOf(mesh)) {}

    void Take()
    {
        auto const type = m_mesh.MeshType();
        for (unsigned long i = 0; i < m_mesh.PolygonCount(); ++i)
        {
            EditablePolygon const* polygon = nullptr;
            if (m_mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon || !TakeCorners(*polygon))
                continue;
            m_polygon = static_cast<std::uint32_t>(i);
            bool const isStrip = type == IPolygonMesh::kPolygonMeshType_Strip;
            if (!isStrip && type != IPolygonMesh::kPolygonMeshType_Fan)
            {
                AddOutline(m_corners);
                continue;
            }
            for (std::size_t at = 0; at + 2 < m_corners.size(); ++at)
            {
                bool const runsBack = isStrip && at % 2 == 1;
                AddOutline(std::array{m_corners[isStrip ? at : 0], m_corners[runsBack ? at + 2 : at + 1],
                                      m_corners[runsBack ? at + 1 : at + 2]});
            }
        }
    }

    OpenEdges Open()
    {
        std::sort(m_sides.begin(), m_sides.end(),
                  [](Side const& a, Side const& b) { return std::pair(a.low, a.high) < std::pair(b.low, b.high); });
        OpenEdges open;
        for (auto first = m_sides.begin(); first != m_sides.end();)
        {
            auto const last =
                std::find_if(first, m_sides.end(), [&](Side const& side) { return !side.IsAlong(*first); });
            auto const upwards = std::count_if(first, last, [](Side const& side) { return side.isUpwards; });
            auto const rest = (last - first) - 2 * upwards;
            if (rest != 0 && open.count == 0)
                open.polygon = first->polygon;
            open.count += static_cast<std::size_t>(rest < 0 ? -rest : rest);
            first = last;
        }
        return open;
    }

private:
    bool TakeCorners(EditablePolygon const& polygon)
    {
        auto const vertices = polygon.VertexIndices();
        m_corners.clear();
        for (int i = 0; vertices.data && i < vertices.count; ++i)
        {
            int const vertex = vertices.data[i];
            if (vertex < 0 || static_cast<std::size_t>(vertex) >= m_places.size())
                return false;
            m_corners.push_back(m_places[static_cast<std::size_t>(vertex)]);
        }
        return m_corners.size() >= 3;
    }

    void AddOutline(std::span<std::uint32_t const> corners)
    {
        for (std::size_t i = 0; i < corners.size(); ++i)
        {
            std::uint32_t const from = corners[i];
            std::uint32_t const to = corners[(i + 1) % corners.size()];
            if (from != to)
                m_sides.push_back({std::min(from, to), std::max(from, to), m_polygon, from < to});
        }
    }

    IPolygonMesh const& m_mesh;
    std::vector<std::uint32_t> m_places;
    std::vector<Side> m_sides;
    std::vector<std::uint32_t> m_corners;
    std::uint32_t m_polygon = 0;
};

}  // namespace

OpenEdges OpenEdges::Of(IPolygonMesh const& mesh)
{
    Sides sides(mesh);
    sides.Take();
    return sides.Open();
}

}  // namespace KVR
