#include "host/export/Triangulation.h"

#include <cmath>
#include <numeric>

namespace KVR
{

namespace
{

template <class Point>
double Turn(Point const& a, Point const& b, Point const& c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

}  // namespace

Triple AreaVector(std::span<Triple const> corners)
{
    Triple sum{};
    // From the first corner, so that a polygon far away keeps its digits.
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
    {
        Triple a;
        Triple b;
        for (std::size_t k = 0; k < 3; ++k)
        {
            a[k] = corners[i][k] - corners[0][k];
            b[k] = corners[i + 1][k] - corners[0][k];
        }
        sum[0] += a[1] * b[2] - a[2] * b[1];
        sum[1] += a[2] * b[0] - a[0] * b[2];
        sum[2] += a[0] * b[1] - a[1] * b[0];
    }
    return sum;
}

std::span<std::uint32_t const> Triangulation::Cut(std::span<Triple const> corners)
{
    m_triangles.clear();
    if (corners.size() < 3)
        return m_triangles;
    if (corners.size() == 3)
    {
        Fan(3);
        return m_triangles;
    }
    Flatten(corners);
    if (IsConvex())
        Fan(corners.size());
    else if (corners.size() > kMostConcaveCorners)
    {
        ++m_tooLarge;
        Fan(corners.size());
    }
    else
        CutEars();
    return m_triangles;
}

// Drops the coordinate in which the polygon is thinnest; what is left turns to the left.
void Triangulation::Flatten(std::span<Triple const> corners)
{
    Triple const normal = AreaVector(corners);
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k)
        if (std::abs(normal[k]) > std::abs(normal[axis]))
            axis = k;
    std::size_t const first = (axis + 1) % 3;
    std::size_t const second = (axis + 2) % 3;
    bool const swaps = normal[axis] < 0.0;
    m_points.clear();
    for (Triple const& corner : corners)
        m_points.push_back(swaps ? Flat{corner[second], corner[first]} : Flat{corner[first], corner[second]});
}

// Whether no corner turns to the right; what turns to the left more than once round is taken for concave by its steps
// to and fro.
bool Triangulation::IsConvex() const
{
    std::size_t const count = m_points.size();
    unsigned changes = 0;
    double before = m_points[0].x - m_points[count - 1].x;
    for (std::size_t i = 0; i < count; ++i)
    {
        Flat const& next = m_points[(i + 1) % count];
        if (Turn(m_points[i], next, m_points[(i + 2) % count]) < 0.0)
            return false;
        double const step = next.x - m_points[i].x;
        if (step == 0.0)
            continue;
        changes += (step > 0.0) != (before > 0.0) && before != 0.0 ? 1 : 0;
        before = step;
    }
    return changes <= 2;
}

void Triangulation::Fan(std::size_t count)
{
    for (std::uint32_t i = 1; i + 1 < count; ++i)
        m_triangles.insert(m_triangles.end(), {0, i, i + 1});
}

bool Triangulation::IsEar(std::size_t before, std::size_t place, std::size_t after) const
{
    Flat const& a = m_points[m_left[before]];
    Flat const& b = m_points[m_left[place]];
    Flat const& c = m_points[m_left[after]];
    if (Turn(a, b, c) <= 0.0)
        return false;
    for (std::size_t i = 0; i < m_left.size(); ++i)
    {
        if (i == before || i == place || i == after)
            continue;
        Flat const& point = m_points[m_left[i]];
        // A hole's bridge has corners in one place: they do not stand in each other's way.
        bool const isCorner = (point.x == a.x && point.y == a.y) || (point.x == b.x && point.y == b.y) ||
                              (point.x == c.x && point.y == c.y);
        if (!isCorner && Turn(a, b, point) >= 0.0 && Turn(b, c, point) >= 0.0 && Turn(c, a, point) >= 0.0)
            return false;
    }
    return true;
}

void Triangulation::CutEars()
{
    m_left.resize(m_points.size());
    std::iota(m_left.begin(), m_left.end(), 0U);
    std::size_t place = 0;
    std::size_t tries = 0;
    while (m_left.size() > 3)
    {
        std::size_t const count = m_left.size();
        std::size_t const before = (place + count - 1) % count;
        std::size_t const after = (place + 1) % count;
        // Of a polygon that meets itself no ear may be left: any corner does then.
        if (tries < count && !IsEar(before, place, after))
        {
            place = after;
            ++tries;
            continue;
        }
        m_triangles.insert(m_triangles.end(), {m_left[before], m_left[place], m_left[after]});
        m_left.erase(m_left.begin() + static_cast<std::ptrdiff_t>(place));
        place = place == 0 ? 0 : place - 1;
        place %= m_left.size();
        tries = 0;
    }
    m_triangles.insert(m_triangles.end(), m_left.begin(), m_left.end());
}

}  // namespace KVR
