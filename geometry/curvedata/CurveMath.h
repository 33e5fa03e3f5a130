#pragma once

#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Position.h"
#include "geometry/curvedata/CurveRecord.h"

namespace KVR
{

/// What the curve classes compute with.
struct CurveMath
{
    static CurveVector VectorOf(Position const& point) { return {point.X(), point.Y(), point.Z()}; }

    /// Writes the point; not available, with the output left alone, when it is not finite.
    static DataReturnCodeEnum Answer(CurveVector const& value, Position& point);

    /// The parameter of the foot of the perpendicular from the point; false for a line without direction.
    static bool ParameterOnLine(CurveVector const& root, CurveVector const& direction, Position const& point,
                                double& parameter);

    /// The value in [lower, upper] at which the distance is least, near the least of the samples: a golden section
    /// search between the neighbours of that sample.
    template <class Distance>
    static double Nearest(Distance distance, std::vector<double> const& samples);
};

template <class Distance>
double CurveMath::Nearest(Distance distance, std::vector<double> const& samples)
{
    std::size_t best = 0;
    double bestDistance = distance(samples[0]);
    for (std::size_t i = 1; i < samples.size(); ++i)
    {
        double const d = distance(samples[i]);
        if (d < bestDistance)
        {
            best = i;
            bestDistance = d;
        }
    }
    constexpr double kGolden = 0.6180339887498949;
    double low = samples[best == 0 ? 0 : best - 1];
    double high = samples[best + 1 == samples.size() ? best : best + 1];
    for (int i = 0; i < 100 && low < high; ++i)
    {
        double const a = high - kGolden * (high - low);
        double const b = low + kGolden * (high - low);
        if (distance(a) <= distance(b))
            high = b;
        else
            low = a;
    }
    double const refined = 0.5 * (low + high);
    return distance(refined) < bestDistance ? refined : samples[best];
}

}  // namespace KVR
