#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace KVR
{

/// Divides a polygon into triangles, whose corners are places in the list of its points. One with dents is divided
/// along lines within it, as far as it has an inside; one of more than 4,096 points as if it had none.
std::vector<std::array<std::uint32_t, 3>> TrianglesOfPolygon(std::span<std::array<double, 3> const> points);

}  // namespace KVR
