#pragma once

#include "framework/api/Enums.h"

namespace KVR
{

/// The three units that an object states.
struct Units
{
    UnitTypeEnum length = kUnitType_Unknown;
    UnitTypeEnum displayAngle = kUnitType_Unknown;
    UnitTypeEnum displayLength = kUnitType_Unknown;
};

/// A base with IUnit in it, and the operations of that interface: each is specified always, also when nothing was read.
template <class Base>
class UnitState : public Base
{
public:
    using Base::Base;

    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override
    {
        unit = m_units.length;
        return kIsValueSpecified_Yes;
    }
    IsValueSpecifiedEnum DisplayAngleUnit(UnitTypeEnum& unit) const override
    {
        unit = m_units.displayAngle;
        return kIsValueSpecified_Yes;
    }
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override
    {
        unit = m_units.displayLength;
        return kIsValueSpecified_Yes;
    }

protected:
    Units m_units;
};

}  // namespace KVR
