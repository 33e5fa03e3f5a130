#include "exchange/export/StepUnit.h"

namespace KVR
{

char const* StepUnitOf(UnitTypeEnum unit) noexcept
{
    switch (unit)
    {
        case kUnitType_Micrometer:
            return "UM";
        case kUnitType_Millimeter:
            return "MM";
        case kUnitType_Centimeter:
            return "CM";
        case kUnitType_Meter:
            return "M";
        case kUnitType_Kilometer:
            return "KM";
        case kUnitType_Microinch:
            return "UIN";
        case kUnitType_Mil:
            return "MIL";
        case kUnitType_Inch:
            return "INCH";
        case kUnitType_Foot:
            return "FT";
        case kUnitType_Mile:
            return "MI";
        default:
            return nullptr;
    }
}

}  // namespace KVR
