#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "framework/api/Export.h"

namespace KVR
{

class UTF16String;

/// Narrow text: bytes in UTF-8, kept as they were given. Object ids and keys are always of this type. Operations throw
/// only std::bad_alloc.
class KVR_API UTF8String
{
public:
    UTF8String() noexcept = default;
    /// The bytes up to the terminating zero; a null pointer gives the empty text.
    UTF8String(char const* text);
    explicit UTF8String(std::string bytes) noexcept;
    explicit UTF8String(std::string_view bytes);
    /// Exact; a lone surrogate becomes U+FFFD.
    explicit UTF8String(UTF16String const& text);
    UTF8String(UTF8String const&) = default;
    UTF8String(UTF8String&&) noexcept = default;
    virtual ~UTF8String();

    UTF8String& operator=(char const* text);
    UTF8String& operator=(UTF8String const&) = default;
    UTF8String& operator=(UTF8String&&) noexcept = default;

    /// 0 when equal, negative when this text comes first by its bytes, positive otherwise. Null counts as empty.
    int Compare(char const* text) const noexcept;
    /// The zero-terminated bytes, valid while the string lives unchanged.
    char const* Value() const noexcept { return m_bytes.c_str(); }
    /// The bytes as a view, valid while the string lives unchanged.
    std::string_view View() const noexcept { return m_bytes; }
    /// Whether there is no byte.
    bool IsEmpty() const noexcept { return m_bytes.empty(); }
    /// The number of bytes.
    unsigned long long Size() const noexcept { return m_bytes.size(); }
    /// The index of the first such byte at or behind `start`, or -1.
    long long Find(char byte, unsigned long long start = 0) const noexcept;
    /// At most `length` bytes from `start`; empty when `start` is beyond the end or `length` is not above 0.
    UTF8String Substr(unsigned long long start, long length) const;
    /// Inserts in place and returns itself; a position beyond the end counts as the end.
    UTF8String& Insert(unsigned long long position, UTF8String const& text);
    /// This text with the other behind it.
    UTF8String operator+(UTF8String const& text) const;
    /// Removes the byte from both ends, in place, and returns itself.
    UTF8String& Trim(char byte);

    /// A strict total order, by the values of the bytes.
    friend bool operator<(UTF8String const& a, UTF8String const& b) noexcept { return a.m_bytes < b.m_bytes; }
    friend bool operator==(UTF8String const& a, UTF8String const& b) noexcept { return a.m_bytes == b.m_bytes; }

private:
    std::string m_bytes;
};

}  // namespace KVR

/// The hash of the bytes, equal for equal texts.
template <>
struct std::hash<KVR::UTF8String>
{
    /// The hash of a text.
    std::size_t operator()(KVR::UTF8String const& text) const noexcept
    {
        return std::hash<std::string_view>()(text.View());
    }
};
