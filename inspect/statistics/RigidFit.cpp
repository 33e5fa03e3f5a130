#include "inspect/statistics/RigidFit.h"

#include <cmath>
#include <cstddef>

namespace KVR
{

namespace
{

FitPoint Minus(FitPoint const& a, FitPoint const& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

FitPoint Times(FitPoint const& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

double Dot(FitPoint const& a, FitPoint const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

FitPoint Cross(FitPoint const& a, FitPoint const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Length(FitPoint const& a)
{
    return std::sqrt(Dot(a, a));
}

// The place of the point at which a measure is greatest.
template <class Measure>
std::size_t Farthest(std::span<FitPoint const> points, Measure const& measure)
{
    std::size_t farthest = 0;
    double most = -1.0;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (double const length = measure(points[i]); length > most)
        {
            most = length;
            farthest = i;
        }
    return farthest;
}

// Three points that are as far from one line as can be found in two passes.
struct Places
{
    std::size_t origin = 0;
    std::size_t along = 0;
    std::size_t aside = 0;

    static Places Of(std::span<FitPoint const> points)
    {
        Places places;
        places.along = Farthest(points, [&](FitPoint const& point) { return Length(Minus(point, points[0])); });
        FitPoint const line = Minus(points[places.along], points[0]);
        places.aside =
            Farthest(points, [&](FitPoint const& point) { return Length(Cross(line, Minus(point, points[0]))); });
        return places;
    }
};

// Three directions at right angles: from the first place to the second, towards the third, and across both.
using Frame = std::array<FitPoint, 3>;

Frame FrameOf(std::span<FitPoint const> points, Places const& places)
{
    Frame frame{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    FitPoint const line = Minus(points[places.along], points[places.origin]);
    if (Length(line) > 0.0)
        frame[0] = Times(line, 1.0 / Length(line));
    FitPoint across = Cross(frame[0], Minus(points[places.aside], points[places.origin]));
    // On one line any direction across it will do.
    for (std::size_t axis = 0; axis < 3 && Length(across) <= 1e-12 * Length(line); ++axis)
    {
        FitPoint other{};
        other[axis] = Length(line) > 0.0 ? Length(line) : 1.0;
        across = Cross(frame[0], other);
    }
    frame[2] = Times(across, 1.0 / Length(across));
    frame[1] = Cross(frame[2], frame[0]);
    return frame;
}

FitPoint Placed(Matrix const& m, FitPoint const& p)
{
    return {m[0] * p[0] + m[1] * p[1] + m[2] * p[2] + m[3], m[4] * p[0] + m[5] * p[1] + m[6] * p[2] + m[7],
            m[8] * p[0] + m[9] * p[1] + m[10] * p[2] + m[11]};
}

}  // namespace

std::optional<Matrix> RigidFit(std::span<FitPoint const> from, std::span<FitPoint const> to, double tolerance)
{
    if (from.empty() || from.size() != to.size())
        return std::nullopt;
    Places const places = Places::Of(from);
    Frame const before = FrameOf(from, places);
    Frame const after = FrameOf(to, places);
    Matrix motion = kIdentity;
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
        {
            double sum = 0.0;
            for (std::size_t axis = 0; axis < 3; ++axis)
                sum += after[axis][row] * before[axis][column];
            motion[4 * row + column] = sum;
        }
    FitPoint const turned = Placed(motion, from[places.origin]);
    for (std::size_t row = 0; row < 3; ++row)
        motion[4 * row + 3] = to[places.origin][row] - turned[row];
    for (std::size_t i = 0; i < from.size(); ++i)
        if (!(Length(Minus(Placed(motion, from[i]), to[i])) <= tolerance))
            return std::nullopt;
    return motion;
}

}  // namespace KVR
