#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

/// How long a unit is in metres; 0 for one that is no unit of length.
KVR_API double MetresOf(UnitTypeEnum unit) noexcept;
/// The unit of a length in metres, to a relative 1e-9; kUnitType_Unknown for none.
KVR_API UnitTypeEnum UnitOfLength(double metres) noexcept;

}  // namespace KVR
