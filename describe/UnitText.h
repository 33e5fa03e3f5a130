#pragma once

#include <string_view>

#include "framework/api/Enums.h"

namespace KVR
{

/// The unit's text, which is its enumerator's name; empty for a number that is none.
std::string_view UnitText(UnitTypeEnum unit) noexcept;

}  // namespace KVR
