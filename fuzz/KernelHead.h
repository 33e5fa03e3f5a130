#pragma once

#include <string>
#include <string_view>

namespace KVR::Fuzz
{

/// A kernel store of that content in one form or the other, with a head that fits.
std::string WithHead(std::string_view content, bool isText);

}  // namespace KVR::Fuzz
