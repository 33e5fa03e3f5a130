#pragma once

#include <vector>

namespace KVR
{

struct TreemapRectangle
{
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Divides a rectangle among weights, each with an area in proportion to it, so that the parts are as nearly squares as
/// rows of them allow. Weights are positive, the largest first; the parts are in their order.
std::vector<TreemapRectangle> TreemapOf(std::vector<double> const& weights, TreemapRectangle const& whole);

}  // namespace KVR
