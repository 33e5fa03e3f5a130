#pragma once

#include <string_view>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

/// The text by which a scene names a unit, which is its enumerator's name; null for a number that is no unit. Texts
/// live as long as the program.
KVR_API char const* TextOfUnit(UnitTypeEnum unit) noexcept;

/// The unit that a scene names so, compared exactly; false, with the unit untouched, for any other text.
[[nodiscard]] KVR_API bool UnitOfText(std::string_view text, UnitTypeEnum& unit) noexcept;

}  // namespace KVR
