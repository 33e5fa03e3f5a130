#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "framework/api/Interval.h"

namespace KVR
{

class ICompositeCurveData;
class ICurveData;
class INurbsCurveData;

/// Composites are read to 1,000 levels; whoever serves deeper ones must do no harm either.
constexpr unsigned kDeepestCurveNesting = 1001;

/// What is asked of curve data that a source may have filled with anything.
struct CurveDataFacts
{
    /// The range of the parameter; nothing for one without an end on either side.
    static std::optional<Interval> RangeOf(ICurveData const& data);

    /// All knots, the outermost ones too, which a source may have left out; empty when they fit no curve.
    static std::vector<double> KnotsOf(INurbsCurveData const& data, std::uint32_t degree, std::uint32_t poles);

    /// False where the segments end: their count is what the source claims.
    static bool TakeSegment(ICompositeCurveData const& data, std::uint32_t place, ICurveData*& segment);
};

}  // namespace KVR
