#pragma once

#include <limits>
#include <vector>

#include "exchange/certify/FactPlace.h"

namespace KVR::Certification
{

/// How much there is of something, and where: measures that can be added up.
struct Bulk
{
    /// Of what encloses room, turned to the outside also where a place mirrors; and without a sign.
    double volume = 0.0;
    double absoluteVolume = 0.0;
    double area = 0.0;
    /// Of lines.
    double length = 0.0;
    /// The centre of each, times the measure.
    FactPoint volumeMoment{};
    FactPoint areaMoment{};
    FactPoint lengthMoment{};
    /// The lowest and the highest corner; the lowest is above the highest where there is nothing.
    FactPoint low{kNothing, kNothing, kNothing};
    FactPoint high{-kNothing, -kNothing, -kNothing};

    void AddPoint(FactPoint const& point);
    void AddTriangle(FactPoint const& a, FactPoint const& b, FactPoint const& c);
    void AddLine(FactPoint const& a, FactPoint const& b);
    void Add(Bulk const& other);
    /// What it is at a place that scales alike in all directions, but for the box, which is left empty.
    Bulk At(FactPlace const& place) const;

    bool IsEmpty() const { return volume == 0.0 && area == 0.0 && length == 0.0; }
    bool HasBox() const { return low[0] <= high[0]; }
    /// That of the volume or, where there is none, of the area or the length.
    FactPoint Centre() const;
    /// All numbers in a row, and back.
    std::vector<double> Numbers() const;
    static Bulk Of(std::vector<double> const& numbers);

private:
    static constexpr double kNothing = std::numeric_limits<double>::max();
};

}  // namespace KVR::Certification
