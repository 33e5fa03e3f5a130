#pragma once

#include <string_view>

#include "framework/api/UTF8String.h"

class TCollection_ExtendedString;
class TDF_Label;

namespace KVR
{

/// Text as a scene can hold it: bytes that are not UTF-8 become U+FFFD, and characters that XML does not know blanks.
UTF8String CleanText(std::string_view text);
UTF8String CleanExtendedText(TCollection_ExtendedString const& text);
/// The name of a label; empty when it has none of its own.
UTF8String NameOfLabel(TDF_Label const& label);

}  // namespace KVR
