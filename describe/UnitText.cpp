#include "describe/UnitText.h"

namespace KVR
{

std::string_view UnitText(UnitTypeEnum unit) noexcept
{
    switch (unit)
    {
        case kUnitType_Unknown:
            return "kUnitType_Unknown";
        case kUnitType_Micrometer:
            return "kUnitType_Micrometer";
        case kUnitType_Millimeter:
            return "kUnitType_Millimeter";
        case kUnitType_Centimeter:
            return "kUnitType_Centimeter";
        case kUnitType_Decimeter:
            return "kUnitType_Decimeter";
        case kUnitType_Meter:
            return "kUnitType_Meter";
        case kUnitType_Kilometer:
            return "kUnitType_Kilometer";
        case kUnitType_Microinch:
            return "kUnitType_Microinch";
        case kUnitType_Mil:
            return "kUnitType_Mil";
        case kUnitType_Inch:
            return "kUnitType_Inch";
        case kUnitType_Foot:
            return "kUnitType_Foot";
        case kUnitType_Yard:
            return "kUnitType_Yard";
        case kUnitType_Mile:
            return "kUnitType_Mile";
        case kUnitType_Radian:
            return "kUnitType_Radian";
        case kUnitType_Degree:
            return "kUnitType_Degree";
        case kUnitType_Gradian:
            return "kUnitType_Gradian";
        case kUnitType_Milligram:
            return "kUnitType_Milligram";
        case kUnitType_Gram:
            return "kUnitType_Gram";
        case kUnitType_Kilogram:
            return "kUnitType_Kilogram";
        case kUnitType_Tonne:
            return "kUnitType_Tonne";
        case kUnitType_Ounce:
            return "kUnitType_Ounce";
        case kUnitType_Pound:
            return "kUnitType_Pound";
        case kUnitType_Slug:
            return "kUnitType_Slug";
        case kUnitType_Millisecond:
            return "kUnitType_Millisecond";
        case kUnitType_Second:
            return "kUnitType_Second";
        case kUnitType_Minute:
            return "kUnitType_Minute";
        case kUnitType_Hour:
            return "kUnitType_Hour";
        case kUnitType_Day:
            return "kUnitType_Day";
    }
    return {};
}

}  // namespace KVR
