#include "framework/api/UnitText.h"

#include "framework/api/EnumText.h"

namespace KVR
{

namespace
{

constexpr EnumText<UnitTypeEnum> kUnitTypeTexts[] = {
    {"kUnitType_Unknown", kUnitType_Unknown},
    {"kUnitType_Micrometer", kUnitType_Micrometer},
    {"kUnitType_Millimeter", kUnitType_Millimeter},
    {"kUnitType_Centimeter", kUnitType_Centimeter},
    {"kUnitType_Decimeter", kUnitType_Decimeter},
    {"kUnitType_Meter", kUnitType_Meter},
    {"kUnitType_Kilometer", kUnitType_Kilometer},
    {"kUnitType_Microinch", kUnitType_Microinch},
    {"kUnitType_Mil", kUnitType_Mil},
    {"kUnitType_Inch", kUnitType_Inch},
    {"kUnitType_Foot", kUnitType_Foot},
    {"kUnitType_Yard", kUnitType_Yard},
    {"kUnitType_Mile", kUnitType_Mile},
    {"kUnitType_Radian", kUnitType_Radian},
    {"kUnitType_Degree", kUnitType_Degree},
    {"kUnitType_Gradian", kUnitType_Gradian},
    {"kUnitType_Milligram", kUnitType_Milligram},
    {"kUnitType_Gram", kUnitType_Gram},
    {"kUnitType_Kilogram", kUnitType_Kilogram},
    {"kUnitType_Tonne", kUnitType_Tonne},
    {"kUnitType_Ounce", kUnitType_Ounce},
    {"kUnitType_Pound", kUnitType_Pound},
    {"kUnitType_Slug", kUnitType_Slug},
    {"kUnitType_Millisecond", kUnitType_Millisecond},
    {"kUnitType_Second", kUnitType_Second},
    {"kUnitType_Minute", kUnitType_Minute},
    {"kUnitType_Hour", kUnitType_Hour},
    {"kUnitType_Day", kUnitType_Day},
};

}  // namespace

char const* TextOfUnit(UnitTypeEnum unit) noexcept
{
    return TextOfValue(kUnitTypeTexts, unit).data();
}

bool UnitOfText(std::string_view text, UnitTypeEnum& unit) noexcept
{
    return ValueOfText(kUnitTypeTexts, text, unit);
}

}  // namespace KVR
