#pragma once

#include <string>

#include "framework/api/Enums.h"

namespace KVR::Python
{

/// The name of a unit in Python: "millimeter"; empty for none.
std::string NameOfUnit(UnitTypeEnum unit);
/// The unit of that name; throws ValueError for any other.
UnitTypeEnum UnitOfName(std::string const& name);

}  // namespace KVR::Python
