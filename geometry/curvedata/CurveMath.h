#pragma once

#include <algorithm>
#include <cmath>
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

    /// The parameter, between the first and last of the samples, of the point nearest to the wanted one. The samples
    /// rise and are close enough for the curve to come nearest once between two of them, in no more than a few of which
    /// it is nearly as near.
    template <class PointAt>
    static double Nearest(PointAt pointAt, CurveVector const& wanted, std::vector<double> const& samples);
};

template <class PointAt>
double CurveMath::Nearest(PointAt pointAt, CurveVector const& wanted, std::vector<double> const& samples)
{
    auto const distanceAt = [&](double parameter)
    {
        CurveVector const apart = pointAt(parameter) - wanted;
        return std::sqrt(Dot(apart, apart));
    };
    struct Stretch
    {
        double low;
        double high;
        /// No point of it is nearer.
        double bound;
    };
    // An arc is taken to be no longer than so many times its chord.
    constexpr double kArcByChord = 1.25;
    std::vector<Stretch> stretches;
    double best = samples.front();
    CurveVector point = pointAt(best);
    double bestDistance = distanceAt(best);
    double distance = bestDistance;
    for (std::size_t i = 1; i < samples.size(); ++i)
    {
        CurveVector const next = pointAt(samples[i]);
        CurveVector const chord = next - point;
        double const nextDistance = distanceAt(samples[i]);
        double const arc = kArcByChord * std::sqrt(Dot(chord, chord));
        stretches.push_back({samples[i - 1], samples[i], 0.5 * (distance + nextDistance - arc)});
        if (nextDistance < bestDistance)
        {
            bestDistance = nextDistance;
            best = samples[i];
        }
        point = next;
        distance = nextDistance;
    }
    std::sort(stretches.begin(), stretches.end(), [](Stretch const& a, Stretch const& b) { return a.bound < b.bound; });
    // Of a curve that is as near everywhere so many will do.
    constexpr std::size_t kMostStretches = 512;
    constexpr double kGolden = 0.6180339887498949;
    for (std::size_t i = 0; i < stretches.size() && i < kMostStretches && stretches[i].bound < bestDistance; ++i)
    {
        double low = stretches[i].low;
        double high = stretches[i].high;
        for (int k = 0; k < 80 && low < high; ++k)
        {
            double const a = high - kGolden * (high - low);
            double const b = low + kGolden * (high - low);
            if (distanceAt(a) <= distanceAt(b))
                high = b;
            else
                low = a;
        }
        double const refined = 0.5 * (low + high);
        double const refinedDistance = distanceAt(refined);
        if (refinedDistance < bestDistance)
        {
            bestDistance = refinedDistance;
            best = refined;
        }
    }
    return best;
}

}  // namespace KVR
