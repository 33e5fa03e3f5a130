#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace KVR
{

/// A row of a table of texts that name the values of an enumeration. The text is ASCII, zero-terminated, and compared
/// exactly.
template <class Enum>
struct EnumText
{
    std::string_view text;
    Enum value;
};

/// False, with the output left alone, for a text that names no value.
template <class Enum, std::size_t kSize, class Char>
[[nodiscard]] bool ValueOfText(EnumText<Enum> const (&rows)[kSize], std::basic_string_view<Char> text, Enum& value)
{
    auto const equal = [](Char a, char b) { return a == static_cast<Char>(b); };
    for (EnumText<Enum> const& row : rows)
    {
        if (!std::equal(text.begin(), text.end(), row.text.begin(), row.text.end(), equal))
            continue;
        value = row.value;
        return true;
    }
    return false;
}

/// The same of document text; null names no value.
template <class Enum, std::size_t kSize>
[[nodiscard]] bool ValueOfText(EnumText<Enum> const (&rows)[kSize], char16_t const* text, Enum& value)
{
    return text && ValueOfText(rows, std::u16string_view(text), value);
}

/// Empty, without a place, for a value that no text names.
template <class Enum, std::size_t kSize>
[[nodiscard]] constexpr std::string_view TextOfValue(EnumText<Enum> const (&rows)[kSize], Enum value)
{
    for (EnumText<Enum> const& row : rows)
    {
        if (row.value == value)
            return row.text;
    }
    return {};
}

/// The text of which `end` is what stands behind the first "_"; empty when there is none.
template <class Enum, std::size_t kSize>
[[nodiscard]] constexpr std::string_view TextOfEnd(EnumText<Enum> const (&rows)[kSize], std::string_view end)
{
    for (EnumText<Enum> const& row : rows)
    {
        if (row.text.substr(row.text.find('_') + 1) == end)
            return row.text;
    }
    return {};
}

}  // namespace KVR
