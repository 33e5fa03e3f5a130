#pragma once

#include <optional>

#include "framework/api/Enums.h"

namespace KVR
{

/// A length unit in metres; not one of length has none.
std::optional<double> MetresOf(UnitTypeEnum unit) noexcept;

/// A length unit's name for Open CASCADE's STEP writer; null for one that it does not know.
char const* StepUnitOf(UnitTypeEnum unit) noexcept;

}  // namespace KVR
