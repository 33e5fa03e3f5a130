#include "framework/api/LengthUnits.h"

#include <cmath>
#include <utility>

namespace KVR
{

namespace
{

constexpr std::pair<UnitTypeEnum, double> kUnits[] = {
    {kUnitType_Micrometer, 1e-6},   {kUnitType_Millimeter, 1e-3}, {kUnitType_Centimeter, 1e-2},
    {kUnitType_Decimeter, 1e-1},    {kUnitType_Meter, 1.0},       {kUnitType_Kilometer, 1e3},
    {kUnitType_Microinch, 2.54e-8}, {kUnitType_Mil, 2.54e-5},     {kUnitType_Inch, 0.0254},
    {kUnitType_Foot, 0.3048},       {kUnitType_Yard, 0.9144},     {kUnitType_Mile, 1609.344},
};

}  // namespace

double MetresOf(UnitTypeEnum unit) noexcept
{
    for (auto const& [known, length] : kUnits)
        if (known == unit)
            return length;
    return 0.0;
}

UnitTypeEnum UnitOfLength(double metres) noexcept
{
    for (auto const& [unit, length] : kUnits)
        if (std::abs(metres - length) <= 1e-9 * length)
            return unit;
    return kUnitType_Unknown;
}

}  // namespace KVR
