#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVR
{

/// The one of the names that a text was most likely meant to be, by the letters that were left out, put in, changed or
/// swapped; empty when none is near. Of names that are as near the first one counts.
std::string NearestName(std::string_view text, std::vector<std::string> const& names);

}  // namespace KVR
