#include "scene/geometry/CurveDataFacts.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "framework/api/ICurveData.h"

namespace KVR
{

std::optional<Interval> CurveDataFacts::RangeOf(ICurveData const& data)
{
    Interval range(0.0, 0.0);
    if (data.ParameterRange(range) != kDataReturnCode_Ok || !std::isfinite(range.Lower()) ||
        !std::isfinite(range.Upper()))
        return std::nullopt;
    return range;
}

std::vector<double> CurveDataFacts::KnotsOf(INurbsCurveData const& data, std::uint32_t degree, std::uint32_t poles)
{
    std::uint32_t count = 0;
    data.KnotCount(count);
    std::vector<double> knots;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        double knot = 0.0;
        if (data.Knot(static_cast<int>(i), knot) != kDataReturnCode_Ok || !std::isfinite(knot))
            return {};
        knots.push_back(knot);
    }
    if (!knots.empty() && knots.size() + 2 == std::size_t{poles} + degree + 1)
    {
        knots.insert(knots.begin(), knots.front());
        knots.push_back(knots.back());
    }
    bool const fits = knots.size() == std::size_t{poles} + degree + 1 && std::is_sorted(knots.begin(), knots.end());
    return fits ? knots : std::vector<double>();
}

bool CurveDataFacts::TakeSegment(ICompositeCurveData const& data, std::uint32_t place, ICurveData*& segment)
{
    try
    {
        return data.Segment(static_cast<int>(place), segment) == kDataReturnCode_Ok;
    }
    catch (std::out_of_range const&)
    {
        return false;
    }
}

}  // namespace KVR
