#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace KVR
{

using Triple = std::array<double, 3>;

/// Cuts polygons into triangles, each in the polygon's own direction.
class Triangulation
{
public:
    /// The largest concave polygon that is cut along its own outline: the time for one grows with the square of its
    /// corners.
    static constexpr std::size_t kMostConcaveCorners = 512;

    /// The triangles of a polygon whose corners are these points, three places for each; n - 2 triangles for n corners.
    /// The list is valid until the next call.
    std::span<std::uint32_t const> Cut(std::span<Triple const> corners);

    /// Concave polygons with more corners, which were cut as if they were convex.
    unsigned long long TooLarge() const noexcept { return m_tooLarge; }

private:
    struct Flat
    {
        double x;
        double y;
    };

    void Flatten(std::span<Triple const> corners);
    bool IsConvex() const;
    void Fan(std::size_t count);
    void CutEars();
    bool IsEar(std::size_t before, std::size_t place, std::size_t after) const;

    std::vector<Flat> m_points;
    std::vector<std::uint32_t> m_left;
    std::vector<std::uint32_t> m_triangles;
    unsigned long long m_tooLarge = 0;
};

/// The cross product of two sides of a polygon, summed over it: its normal, with twice its area as its length.
Triple AreaVector(std::span<Triple const> corners);

}  // namespace KVR
