#pragma once

#include "framework/api/Enums.h"

namespace KVR
{

/// A length unit's name for Open CASCADE's STEP writer; null for one that it does not know.
char const* StepUnitOf(UnitTypeEnum unit) noexcept;

}  // namespace KVR
