#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace KVR
{

/// Divides polygons into triangles of their corners.
class PolygonSplitter
{
public:
    using Triangle = std::array<std::size_t, 3>;
    using Point = std::array<double, 3>;

    /// The triangles of a polygon that may have dents but no holes; valid until the next call.
    std::vector<Triangle> const& Split(std::vector<Point> const& corners);
    /// Those of a fan around the first corner, and of a strip.
    std::vector<Triangle> const& Fan(std::size_t count);
    std::vector<Triangle> const& Strip(std::size_t count);

private:
    std::vector<Triangle> m_triangles;
    std::vector<std::size_t> m_left;
    std::vector<std::array<double, 2>> m_flat;
};

}  // namespace KVR
