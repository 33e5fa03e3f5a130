#pragma once

#include <string>
#include <string_view>

namespace KVR
{

/// What a text of a STEP file means, in UTF-8: doubled apostrophes and backslashes are single, and the escapes of ISO
/// 10303-21 are characters. Bytes beyond ASCII stay as they are; an escape that is damaged stays text.
std::string Part21Text(std::string_view quoted);

}  // namespace KVR
