#pragma once

#include <string>
#include <string_view>

namespace KVR::Authoring
{

/// Appends a blank and an attribute with that value. Throws GeneralException for a value that is not UTF-8 or has a
/// character that XML does not know, with some of the attribute appended.
void AppendAttribute(std::string& element, std::string_view name, std::string_view value);

}  // namespace KVR::Authoring
