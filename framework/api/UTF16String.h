#pragma once

#include <string>
#include <string_view>

#include "framework/api/Export.h"

namespace KVR
{

class UTF8String;

/// Wide text: UTF-16 where wchar_t has 16 bits, UTF-32 elsewhere. Labels, paths and descriptions are always of this
/// type. Operations throw only std::bad_alloc.
class KVR_API UTF16String
{
public:
    UTF16String() noexcept = default;
    /// The text up to the terminating zero, kept as it is; a null pointer gives the empty text.
    UTF16String(wchar_t const* text);
    /// Exact; a lone surrogate becomes U+FFFD; a null pointer gives the empty text.
    UTF16String(char16_t const* text);
    explicit UTF16String(std::wstring text) noexcept;
    /// Exact; bytes that are not UTF-8 become U+FFFD.
    explicit UTF16String(UTF8String const& text);
    UTF16String(UTF16String const&) = default;
    UTF16String(UTF16String&&) noexcept = default;
    virtual ~UTF16String();

    UTF16String& operator=(UTF16String const&) = default;
    UTF16String& operator=(UTF16String&&) noexcept = default;

    /// 0 when equal, negative when this text comes first by its code units, positive otherwise. Null counts as empty.
    int Compare(wchar_t const* text) const noexcept;
    /// Lower-cases the letters A to Z in place, and no others, whatever the locale; returns itself.
    UTF16String& ToLower() noexcept;
    /// The zero-terminated text, valid while the string lives unchanged.
    wchar_t const* Value() const noexcept { return m_text.c_str(); }
    /// The text as a view, valid while the string lives unchanged.
    std::wstring_view View() const noexcept { return m_text; }
    /// Whether there is no character.
    bool IsEmpty() const noexcept { return m_text.empty(); }

    /// A strict total order, by the values of the code units.
    friend bool operator<(UTF16String const& a, UTF16String const& b) noexcept { return a.m_text < b.m_text; }
    friend bool operator==(UTF16String const& a, UTF16String const& b) noexcept { return a.m_text == b.m_text; }

private:
    std::wstring m_text;
};

}  // namespace KVR
