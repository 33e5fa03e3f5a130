#pragma once

#include <string>
#include <vector>

#include "framework/api/Enums.h"

namespace KVR
{

/// The units of length by their words, in the order of their enumerators.
std::vector<std::string> const& UnitWords();

/// The unit of one of these words.
UnitTypeEnum UnitOf(std::string const& word);

}  // namespace KVR
