#pragma once

#include <string>
#include <string_view>

namespace KVR::Certification
{

/// What a text of a Part 21 file says, as UTF-8: its bytes between the signs that enclose it, with doubled signs and
/// control directives (\X2\, \X4\, \X\, \S\) resolved. Bytes beyond ASCII that are no UTF-8 are taken for Latin-1.
std::string DecodedPart21(std::string_view bytes);

}  // namespace KVR::Certification
