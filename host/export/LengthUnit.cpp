#include "host/export/LengthUnit.h"

namespace KVR
{

std::optional<double> MetresOf(UnitTypeEnum unit) noexcept
{
    switch (unit)
    {
        case kUnitType_Micrometer:
            return 1e-6;
        case kUnitType_Millimeter:
            return 1e-3;
        case kUnitType_Centimeter:
            return 1e-2;
        case kUnitType_Decimeter:
            return 1e-1;
        case kUnitType_Meter:
            return 1.0;
        case kUnitType_Kilometer:
            return 1e3;
        case kUnitType_Microinch:
            return 0.0254e-6;
        case kUnitType_Mil:
            return 0.0254e-3;
        case kUnitType_Inch:
            return 0.0254;
        case kUnitType_Foot:
            return 0.3048;
        case kUnitType_Yard:
            return 0.9144;
        case kUnitType_Mile:
            return 1609.344;
        default:
            return std::nullopt;
    }
}

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
