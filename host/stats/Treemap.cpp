#include "host/stats/Treemap.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace KVR
{

namespace
{

// How far from a square the worst of a row is: its longer side by its shorter one. Areas of a row are in descending
// order, so that it is the first or the last.
double WorstOf(double first, double last, double sum, double side)
{
    double const squared = side * side;
    return std::max(squared * first / (sum * sum), sum * sum / (squared * last));
}

}  // namespace

std::vector<TreemapRectangle> TreemapOf(std::vector<double> const& weights, TreemapRectangle const& whole)
{
    std::vector<TreemapRectangle> parts;
    parts.reserve(weights.size());
    double const scale = whole.width * whole.height / std::accumulate(weights.begin(), weights.end(), 0.0);
    TreemapRectangle rest = whole;
    for (std::size_t begin = 0; begin < weights.size();)
    {
        // A row stands along the shorter side, and takes weights as long as its worst part gets no worse.
        double const side = std::min(rest.width, rest.height);
        double const first = weights[begin] * scale;
        double sum = first;
        std::size_t end = begin + 1;
        for (; end < weights.size(); ++end)
        {
            double const next = weights[end] * scale;
            if (WorstOf(first, next, sum + next, side) > WorstOf(first, weights[end - 1] * scale, sum, side))
                break;
            sum += next;
        }
        bool const isUpright = rest.width >= rest.height;
        double const thickness = side > 0.0 ? sum / side : 0.0;
        double along = 0.0;
        for (; begin < end; ++begin)
        {
            double const length = thickness > 0.0 ? weights[begin] * scale / thickness : 0.0;
            parts.push_back(isUpright ? TreemapRectangle{rest.x, rest.y + along, thickness, length}
                                      : TreemapRectangle{rest.x + along, rest.y, length, thickness});
            along += length;
        }
        if (isUpright)
        {
            rest.x += thickness;
            rest.width = std::max(0.0, rest.width - thickness);
        }
        else
        {
            rest.y += thickness;
            rest.height = std::max(0.0, rest.height - thickness);
        }
    }
    return parts;
}

}  // namespace KVR
