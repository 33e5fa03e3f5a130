#include "scene/geometry/PolygonSplitter.h"

#include <cmath>

namespace KVR
{

namespace
{

// Clipping ears takes time by the square of the corners: beyond so many a polygon is taken as a fan.
constexpr std::size_t kMostCorners = 512;

double Cross(std::array<double, 2> const& a, std::array<double, 2> const& b, std::array<double, 2> const& c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

}  // namespace

std::vector<PolygonSplitter::Triangle> const& PolygonSplitter::Fan(std::size_t count)
{
    m_triangles.clear();
    for (std::size_t i = 2; i < count; ++i)
        m_triangles.push_back({0, i - 1, i});
    return m_triangles;
}

std::vector<PolygonSplitter::Triangle> const& PolygonSplitter::Strip(std::size_t count)
{
    m_triangles.clear();
    for (std::size_t i = 2; i < count; ++i)
        m_triangles.push_back(i % 2 == 0 ? Triangle{i - 2, i - 1, i} : Triangle{i - 1, i - 2, i});
    return m_triangles;
}

std::vector<PolygonSplitter::Triangle> const& PolygonSplitter::Split(std::vector<Point> const& corners)
{
    std::size_t const count = corners.size();
    if (count <= 3 || count > kMostCorners)
        return Fan(count);
    // The normal by Newell's sum tells in which plane to look.
    std::array<double, 3> normal{};
    for (std::size_t i = 0; i < count; ++i)
    {
        Point const& a = corners[i];
        Point const& b = corners[(i + 1) % count];
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            std::size_t const next = (axis + 1) % 3;
            std::size_t const last = (axis + 2) % 3;
            normal[axis] += (a[next] - b[next]) * (a[last] + b[last]);
        }
    }
    std::size_t dropped = 0;
    for (std::size_t axis = 1; axis < 3; ++axis)
        if (std::abs(normal[axis]) > std::abs(normal[dropped]))
            dropped = axis;
    std::size_t u = (dropped + 1) % 3;
    std::size_t v = (dropped + 2) % 3;
    if (normal[dropped] < 0.0)
        std::swap(u, v);
    m_flat.clear();
    m_left.clear();
    for (std::size_t i = 0; i < count; ++i)
    {
        m_flat.push_back({corners[i][u], corners[i][v]});
        m_left.push_back(i);
    }
    m_triangles.clear();
    std::size_t failures = 0;
    for (std::size_t i = 0; m_left.size() > 3 && failures < m_left.size();)
    {
        std::size_t const size = m_left.size();
        i %= size;
        std::size_t const a = m_left[(i + size - 1) % size];
        std::size_t const b = m_left[i];
        std::size_t const c = m_left[(i + 1) % size];
        bool isEar = Cross(m_flat[a], m_flat[b], m_flat[c]) > 0.0;
        for (std::size_t other = 0; isEar && other < size; ++other)
        {
            std::size_t const p = m_left[other];
            if (p != a && p != b && p != c)
                isEar =
                    !(Cross(m_flat[a], m_flat[b], m_flat[p]) >= 0.0 && Cross(m_flat[b], m_flat[c], m_flat[p]) >= 0.0 &&
                      Cross(m_flat[c], m_flat[a], m_flat[p]) >= 0.0);
        }
        if (!isEar)
        {
            ++i;
            ++failures;
            continue;
        }
        m_triangles.push_back({a, b, c});
        m_left.erase(m_left.begin() + static_cast<std::ptrdiff_t>(i));
        failures = 0;
    }
    // What is left is a triangle, or so flat or crossed that one way is as good as another.
    for (std::size_t i = 2; i < m_left.size(); ++i)
        m_triangles.push_back({m_left[0], m_left[i - 1], m_left[i]});
    return m_triangles;
}

}  // namespace KVR
