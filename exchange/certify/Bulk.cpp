#include "exchange/certify/Bulk.h"

#include <algorithm>

namespace KVR::Certification
{

namespace
{

constexpr double kLeastPart = 1e-9;

FactPoint Between(FactPoint const& a, FactPoint const& b)
{
    return {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
}

// The centre of a measure, moved, times the measure there.
FactPoint MomentAt(FactPlace const& place, FactPoint const& moment, double measure, double there)
{
    if (measure == 0.0)
        return {};
    FactPoint const centre = place.Of({moment[0] / measure, moment[1] / measure, moment[2] / measure});
    return {centre[0] * there, centre[1] * there, centre[2] * there};
}

}  // namespace

void Bulk::AddPoint(FactPoint const& point)
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        low[i] = std::min(low[i], point[i]);
        high[i] = std::max(high[i], point[i]);
    }
}

void Bulk::AddTriangle(FactPoint const& a, FactPoint const& b, FactPoint const& c)
{
    FactPoint const normal = Cross(Between(a, b), Between(a, c));
    double const size = 0.5 * std::hypot(normal[0], normal[1], normal[2]);
    // That of the tetrahedron with the origin.
    double const room = Dot(a, normal) / 6.0;
    area += size;
    volume += room;
    for (std::size_t i = 0; i < 3; ++i)
    {
        double const sum = a[i] + b[i] + c[i];
        areaMoment[i] += size * sum / 3.0;
        volumeMoment[i] += room * sum / 4.0;
    }
}

void Bulk::AddLine(FactPoint const& a, FactPoint const& b)
{
    double const size = std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
    length += size;
    for (std::size_t i = 0; i < 3; ++i)
        lengthMoment[i] += size * (a[i] + b[i]) / 2.0;
}

void Bulk::Add(Bulk const& other)
{
    volume += other.volume;
    absoluteVolume += other.absoluteVolume;
    area += other.area;
    length += other.length;
    for (std::size_t i = 0; i < 3; ++i)
    {
        volumeMoment[i] += other.volumeMoment[i];
        areaMoment[i] += other.areaMoment[i];
        lengthMoment[i] += other.lengthMoment[i];
        low[i] = std::min(low[i], other.low[i]);
        high[i] = std::max(high[i], other.high[i]);
    }
}

Bulk Bulk::At(FactPlace const& place) const
{
    double const scale = std::cbrt(std::abs(place.Determinant()));
    Bulk there;
    there.volume = volume * scale * scale * scale;
    there.absoluteVolume = absoluteVolume * scale * scale * scale;
    there.area = area * scale * scale;
    there.length = length * scale;
    there.volumeMoment = MomentAt(place, volumeMoment, volume, there.volume);
    there.areaMoment = MomentAt(place, areaMoment, area, there.area);
    there.lengthMoment = MomentAt(place, lengthMoment, length, there.length);
    return there;
}

FactPoint Bulk::Centre() const
{
    FactPoint const* moment = &volumeMoment;
    double measure = volume;
    // A sheet encloses next to nothing.
    double const size = std::sqrt(area);
    if (std::abs(volume) <= kLeastPart * size * size * size)
    {
        moment = &areaMoment;
        measure = area;
    }
    if (measure == 0.0)
    {
        moment = &lengthMoment;
        measure = length;
    }
    return measure == 0.0 ? FactPoint{}
                          : FactPoint{(*moment)[0] / measure, (*moment)[1] / measure, (*moment)[2] / measure};
}

std::vector<double> Bulk::Numbers() const
{
    std::vector<double> numbers{volume, absoluteVolume, area, length};
    for (FactPoint const& point : {volumeMoment, areaMoment, lengthMoment, low, high})
        numbers.insert(numbers.end(), point.begin(), point.end());
    // JSON has no others.
    for (double& number : numbers)
        number = std::isfinite(number) ? number : 0.0;
    return numbers;
}

Bulk Bulk::Of(std::vector<double> const& numbers)
{
    Bulk bulk;
    bulk.volume = numbers.at(0);
    bulk.absoluteVolume = numbers.at(1);
    bulk.area = numbers.at(2);
    bulk.length = numbers.at(3);
    std::size_t next = 4;
    for (FactPoint* const point : {&bulk.volumeMoment, &bulk.areaMoment, &bulk.lengthMoment, &bulk.low, &bulk.high})
        for (double& x : *point)
            x = numbers.at(next++);
    return bulk;
}

}  // namespace KVR::Certification
