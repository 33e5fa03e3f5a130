#include "inspect/query/MeshMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "scene/SceneMesh.h"

namespace KVR
{

namespace
{

using Point = std::array<double, 3>;

Point PointOf(SceneMesh const& mesh, std::size_t vertex)
{
    return {mesh.positions[3 * vertex], mesh.positions[3 * vertex + 1], mesh.positions[3 * vertex + 2]};
}

Point Minus(Point const& a, Point const& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point Cross(Point const& a, Point const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(Point const& a, Point const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// For each vertex the first one, in an order by coordinates, in the same place.
std::vector<std::uint32_t> Welded(SceneMesh const& mesh)
{
    std::vector<std::uint32_t> order(mesh.VertexCount());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [&](std::uint32_t a, std::uint32_t b) { return PointOf(mesh, a) < PointOf(mesh, b); });
    std::vector<std::uint32_t> first(order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        first[order[i]] =
            i > 0 && PointOf(mesh, order[i]) == PointOf(mesh, order[i - 1]) ? first[order[i - 1]] : order[i];
    return first;
}

// Whether each side runs as often one way as the other.
bool IsClosed(SceneMesh const& mesh)
{
    std::vector<std::uint32_t> const point = Welded(mesh);
    // Each side from the lower to the higher point, and whether it runs so.
    std::vector<std::pair<std::uint64_t, bool>> sides;
    sides.reserve(mesh.indices.size());
    for (std::size_t i = 0; i < mesh.indices.size(); ++i)
    {
        std::uint64_t const from = point[mesh.indices[i]];
        std::uint64_t const to = point[mesh.indices[i % 3 == 2 ? i - 2 : i + 1]];
        if (from != to)
            sides.emplace_back((std::min(from, to) << 32U) | std::max(from, to), from < to);
    }
    std::sort(sides.begin(), sides.end());
    for (std::size_t i = 0; i < sides.size();)
    {
        std::ptrdiff_t balance = 0;
        std::size_t const begin = i;
        for (; i < sides.size() && sides[i].first == sides[begin].first; ++i)
            balance += sides[i].second ? 1 : -1;
        if (balance != 0)
            return false;
    }
    return !sides.empty();
}

}  // namespace

MeshMeasures MeshMeasures::Of(SceneMesh const& mesh)
{
    MeshMeasures measures;
    if (mesh.indices.empty())
        return measures;
    // Close to the mesh, so that one far from the origin is measured as well.
    Point const origin = PointOf(mesh, mesh.indices.front());
    double sixfold = 0.0;
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3)
    {
        Point const a = Minus(PointOf(mesh, mesh.indices[i]), origin);
        Point const b = Minus(PointOf(mesh, mesh.indices[i + 1]), origin);
        Point const c = Minus(PointOf(mesh, mesh.indices[i + 2]), origin);
        Point const normal = Cross(Minus(b, a), Minus(c, a));
        measures.area += std::sqrt(Dot(normal, normal)) / 2.0;
        sixfold += Dot(a, Cross(b, c));
    }
    if (IsClosed(mesh))
        measures.volume = std::abs(sixfold) / 6.0;
    return measures;
}

}  // namespace KVR
