#pragma once

#include <string_view>

namespace KVR
{

/// Whether nothing in a JSON text stands in more than 200 lists and objects. Those who copy or print parsed JSON go
/// down level by level, and a text of a foreign file may have a million levels: it is asked before it is parsed.
bool IsShallowJson(std::string_view json) noexcept;

}  // namespace KVR
