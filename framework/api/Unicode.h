#pragma once

#include <string>
#include <string_view>

#include "framework/api/Export.h"

namespace KVR::Unicode
{

// Conversions between the three text forms of the framework: UTF-8 bytes, UTF-16 code units, and wide text (UTF-16
// where wchar_t has 16 bits, UTF-32 elsewhere). All are exact for every Unicode text. What is no text becomes U+FFFD:
// each lone surrogate, each value beyond U+10FFFF, and each longest run of bytes that begins a UTF-8 sequence without
// completing it. They throw only std::bad_alloc.

/// UTF-8 of UTF-16.
KVR_API std::string Utf8FromUtf16(std::u16string_view text);
/// Appends the text to bytes that stand there already.
KVR_API void AppendUtf8(std::string& bytes, std::u16string_view text);
/// UTF-8 of wide text.
KVR_API std::string Utf8FromWide(std::wstring_view text);
/// Wide text of UTF-8.
KVR_API std::wstring WideFromUtf8(std::string_view bytes);
/// Wide text of UTF-16.
KVR_API std::wstring WideFromUtf16(std::u16string_view text);
/// UTF-16 of UTF-8.
KVR_API std::u16string Utf16FromUtf8(std::string_view bytes);

}  // namespace KVR::Unicode
