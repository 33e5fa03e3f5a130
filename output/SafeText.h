#pragma once

#include <string>
#include <string_view>

namespace KVR
{

class Output;

/// Writes text of a scene between the quotation marks of a JSON string, or to a terminal: nothing in it can end the
/// string, move the cursor or turn the reading direction. Quotation marks, backslashes, control characters (ASCII and
/// C1), line and paragraph separators and direction marks are written as JSON escapes; bytes that are not UTF-8 become
/// U+FFFD; all other text stands as it is.
void PutEscaped(Output& out, std::string_view text);

/// The same as a string.
std::string Escaped(std::string_view text);

/// Whether it is ASCII of which nothing is escaped.
bool IsPlainText(std::string_view text);

}  // namespace KVR
