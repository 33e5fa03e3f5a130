#include "inspect/estimate/DocumentText.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "framework/api/Unicode.h"

namespace KVR
{

namespace
{

constexpr std::pair<std::string_view, char16_t> kEntities[] = {
    {"amp", u'&'}, {"lt", u'<'}, {"gt", u'>'}, {"quot", u'"'}, {"apos", u'\''},
};

std::optional<std::u16string> CharacterOf(std::string_view name)
{
    for (auto const& [entity, character] : kEntities)
        if (name == entity)
            return std::u16string(1, character);
    if (!name.starts_with('#'))
        return std::nullopt;
    bool const isHexadecimal = name.starts_with("#x");
    name.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t code = 0;
    auto const result = std::from_chars(name.data(), name.data() + name.size(), code, isHexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != name.data() + name.size() || code == 0 || code > 0x10FFFF)
        return std::nullopt;
    if (code < 0x10000)
        return std::u16string(1, static_cast<char16_t>(code));
    code -= 0x10000;
    return std::u16string{static_cast<char16_t>(0xD800 + (code >> 10)), static_cast<char16_t>(0xDC00 + (code & 0x3FF))};
}

}  // namespace

std::string ResolvedReferences(std::string_view text)
{
    std::string resolved;
    while (!text.empty())
    {
        std::size_t const start = text.find('&');
        resolved += text.substr(0, start);
        if (start == std::string_view::npos)
            break;
        text.remove_prefix(start);
        std::size_t const end = text.find(';');
        auto const character = end == std::string_view::npos ? std::nullopt : CharacterOf(text.substr(1, end - 1));
        resolved += character ? Unicode::Utf8FromUtf16(*character) : "&";
        text.remove_prefix(character ? end + 1 : 1);
    }
    return resolved;
}

}  // namespace KVR
