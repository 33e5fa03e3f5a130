#include "exchange/meshes/PolygonCorners.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace KVR
{

namespace
{

using Point = std::array<double, 3>;

constexpr std::size_t kMostWithDents = 4096;
// How many comparisons of points each point of a polygon may cost.
constexpr std::size_t kEffort = 2000;

class Ears
{
public:
    explicit Ears(std::span<Point const> points)
        : m_points(points), m_left(points.size()), m_effort(kEffort * points.size())
    {
        std::iota(m_left.begin(), m_left.end(), 0u);
        // The polygon's normal points along the axis that is left out, or against it.
        Point normal{};
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            Point const& a = points[i];
            Point const& b = points[(i + 1) % points.size()];
            for (std::size_t axis = 0; axis < 3; ++axis)
                normal[axis] += (a[(axis + 1) % 3] - b[(axis + 1) % 3]) * (a[(axis + 2) % 3] + b[(axis + 2) % 3]);
        }
        std::size_t out = 0;
        for (std::size_t axis = 1; axis < 3; ++axis)
            if (std::abs(normal[axis]) > std::abs(normal[out]))
                out = axis;
        m_u = (out + 1) % 3;
        m_v = (out + 2) % 3;
        m_sign = normal[out] < 0.0 ? -1.0 : 1.0;
    }

    std::vector<std::array<std::uint32_t, 3>> Cut()
    {
        while (m_left.size() > 3)
        {
            std::size_t ear = 0;
            while (m_effort > 0 && ear < m_left.size() && !IsEar((m_next + ear) % m_left.size()))
                ++ear;
            // One that crosses itself has none in the end.
            m_next = m_effort > 0 && ear < m_left.size() ? (m_next + ear) % m_left.size() : 1;
            CutOff(m_next);
        }
        m_triangles.push_back({m_left[0], m_left[1], m_left[2]});
        return std::move(m_triangles);
    }

private:
    // Positive where the three turn as the polygon does.
    double Area(std::uint32_t a, std::uint32_t b, std::uint32_t c) const
    {
        Point const& p = m_points[a];
        Point const& q = m_points[b];
        Point const& r = m_points[c];
        return m_sign * ((q[m_u] - p[m_u]) * (r[m_v] - p[m_v]) - (q[m_v] - p[m_v]) * (r[m_u] - p[m_u]));
    }
    std::array<std::uint32_t, 3> At(std::size_t place) const
    {
        std::size_t const count = m_left.size();
        return {m_left[(place + count - 1) % count], m_left[place], m_left[(place + 1) % count]};
    }
    bool IsEar(std::size_t place)
    {
        m_effort -= std::min(m_effort, m_left.size());
        auto const [a, b, c] = At(place);
        if (!(Area(a, b, c) > 0.0))
            return false;
        for (std::uint32_t const other : m_left)
            if (other != a && other != b && other != c && Area(a, b, other) >= 0.0 && Area(b, c, other) >= 0.0 &&
                Area(c, a, other) >= 0.0 && m_points[other] != m_points[a] && m_points[other] != m_points[b] &&
                m_points[other] != m_points[c])
                return false;
        return true;
    }
    void CutOff(std::size_t place)
    {
        m_triangles.push_back(At(place));
        m_left.erase(m_left.begin() + static_cast<std::ptrdiff_t>(place));
    }

    std::span<Point const> m_points;
    std::vector<std::uint32_t> m_left;
    std::size_t m_effort;
    // Where the last ear was.
    std::size_t m_next = 1;
    std::size_t m_u = 0;
    std::size_t m_v = 1;
    double m_sign = 1.0;
    std::vector<std::array<std::uint32_t, 3>> m_triangles;
};

}  // namespace

std::vector<std::array<std::uint32_t, 3>> TrianglesOfPolygon(std::span<Point const> points)
{
    if (points.size() < 3)
        return {};
    if (points.size() > 3 && points.size() <= kMostWithDents)
        return Ears(points).Cut();
    std::vector<std::array<std::uint32_t, 3>> fan;
    for (std::uint32_t i = 2; i < points.size(); ++i)
        fan.push_back({0, i - 1, i});
    return fan;
}

}  // namespace KVR
