#pragma once

#include <string>
#include <string_view>

namespace KVR
{

// How values stand in text for readers.

/// A label, given in UTF-8, in quotation marks; nothing in it ends them or harms a terminal.
std::string Quoted(std::string_view label);

/// "1 child", "2 children".
std::string Counted(unsigned long long count, std::string_view one, std::string_view many);

}  // namespace KVR
