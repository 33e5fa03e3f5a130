#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Enums.h"

namespace KVR
{

/// Reads a "Unit" element. An output whose text is no unit is left alone; the display angle unit is optional. Whether
/// the display length unit converted; false for a null node or one of another name.
[[nodiscard]] bool ReadUnit(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, UnitTypeEnum& displayAngleUnit,
                            UnitTypeEnum& displayLengthUnit);

/// The same for an object that has no display angle unit: it is read and dropped.
[[nodiscard]] bool ReadLengthUnits(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit,
                                   UnitTypeEnum& displayLengthUnit);

/// Reads a "Tolerance" element: radians, length units, parameter units. An output whose text is no number is left
/// alone. Whether the last of the three converted; false for a null node or one of another name.
[[nodiscard]] bool ReadTolerance(xercesc::DOMNode const* node, double& angular, double& linear, double& param);

/// Reads a "UnitAndTolerance" element, the older form that states no display units. A tolerance whose pointer is null
/// is not read. Whether the last conversion succeeded; false for a null node or one of another name.
[[nodiscard]] bool ReadUnitAndTolerance(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, double* angular,
                                        double* linear, double* param);

}  // namespace KVR
