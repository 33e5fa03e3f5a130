#include "exchange/model/Part21Text.h"

#include <charconv>
#include <cstdint>

namespace KVR
{

namespace
{

void PutCharacter(std::string& text, std::uint32_t c)
{
    if (c < 0x80)
        text += static_cast<char>(c);
    else if (c < 0x800)
    {
        text += static_cast<char>(0xC0U | c >> 6U);
        text += static_cast<char>(0x80U | (c & 0x3FU));
    }
    else if (c < 0x10000)
    {
        text += static_cast<char>(0xE0U | c >> 12U);
        text += static_cast<char>(0x80U | (c >> 6U & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
    }
    else
    {
        text += static_cast<char>(0xF0U | (c >> 18U & 0x07U));
        text += static_cast<char>(0x80U | (c >> 12U & 0x3FU));
        text += static_cast<char>(0x80U | (c >> 6U & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
    }
}

bool TakeHex(std::string_view& rest, std::size_t digits, std::uint32_t& value)
{
    if (rest.size() < digits)
        return false;
    auto const [end, error] = std::from_chars(rest.data(), rest.data() + digits, value, 16);
    if (error != std::errc() || end != rest.data() + digits)
        return false;
    rest.remove_prefix(digits);
    return true;
}

// Characters of so many digits, up to the escape that ends them.
bool TakeCharacters(std::string_view& rest, std::size_t digits, std::string& text)
{
    constexpr std::string_view kEnd = "\\X0\\";
    std::string_view ahead = rest;
    std::string taken;
    std::uint32_t high = 0;
    while (!ahead.starts_with(kEnd))
    {
        std::uint32_t value = 0;
        if (!TakeHex(ahead, digits, value))
            return false;
        if (value >= 0xD800 && value < 0xDC00)
            high = value;
        else if (high != 0 && value >= 0xDC00 && value < 0xE000)
        {
            PutCharacter(taken, 0x10000 + ((high - 0xD800) << 10U) + (value - 0xDC00));
            high = 0;
        }
        else
            PutCharacter(taken, value);
    }
    ahead.remove_prefix(kEnd.size());
    rest = ahead;
    text += taken;
    return true;
}

// One escape; false for what is none.
bool TakeEscape(std::string_view& rest, std::string& text)
{
    std::string_view ahead = rest;
    std::uint32_t value = 0;
    if (ahead.starts_with("\\X2\\") || ahead.starts_with("\\X4\\"))
    {
        std::size_t const digits = ahead[2] == '2' ? 4 : 8;
        ahead.remove_prefix(4);
        if (!TakeCharacters(ahead, digits, text))
            return false;
    }
    else if (ahead.starts_with("\\X\\"))
    {
        ahead.remove_prefix(3);
        if (!TakeHex(ahead, 2, value))
            return false;
        PutCharacter(text, value);
    }
    else if (ahead.starts_with("\\S\\") && ahead.size() > 3)
    {
        PutCharacter(text, static_cast<unsigned char>(ahead[3]) + 0x80U);
        ahead.remove_prefix(4);
    }
    else if (ahead.starts_with("\\P") && ahead.size() > 3 && ahead[3] == '\\')
        ahead.remove_prefix(4);
    else
        return false;
    rest = ahead;
    return true;
}

}  // namespace

std::string Part21Text(std::string_view quoted)
{
    std::string text;
    text.reserve(quoted.size());
    while (!quoted.empty())
    {
        char const c = quoted.front();
        if (c == '\\' && TakeEscape(quoted, text))
            continue;
        bool const isDoubled = (c == '\'' || c == '\\') && quoted.size() > 1 && quoted[1] == c;
        // Texts go on over the ends of lines.
        if (c != '\n' && c != '\r')
            text += c;
        quoted.remove_prefix(isDoubled ? 2 : 1);
    }
    return text;
}

}  // namespace KVR
