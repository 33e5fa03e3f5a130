#pragma once

#include "framework/api/Enums.h"

namespace KVR
{

/// A base with IUnit in it, and the operations of that interface for an object that has no angles to show: the two
/// units of length are specified always, the display angle unit never.
template <class Base>
class LengthUnitState : public Base
{
public:
    using Base::Base;

    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override
    {
        unit = m_lengthUnit;
        return kIsValueSpecified_Yes;
    }
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override
    {
        unit = m_displayLengthUnit;
        return kIsValueSpecified_Yes;
    }

protected:
    UnitTypeEnum m_lengthUnit = kUnitType_Unknown;
    UnitTypeEnum m_displayLengthUnit = kUnitType_Unknown;
};

}  // namespace KVR
