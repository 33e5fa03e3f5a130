#include "framework/api/StringUtil.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace KVR
{

namespace
{

using Status = StringUtil::ConversionStatusEnum;

bool IsWhiteSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view ViewOf(char const* text)
{
    return text ? std::string_view(text) : std::string_view();
}

// std::from_chars takes no plus, but a minus behind a plus would pass.
bool DropPlus(std::string_view& text)
{
    if (text.empty() || text.front() != '+')
        return true;
    text.remove_prefix(1);
    return text.empty() || text.front() != '-';
}

template <class Number, class... Form>
Status Convert(std::string_view text, Number& value, Form... form)
{
    Number read{};
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), read, form...);
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        return StringUtil::kConversionStatus_NotANumber;
    if (error != std::errc())
        return StringUtil::kConversionStatus_OutOfRange;
    value = read;
    return StringUtil::kConversionStatus_Success;
}

Status ToDoubleOf(std::string_view text, double& value)
{
    text = Trimmed(text);
    if (!DropPlus(text))
        return StringUtil::kConversionStatus_NotANumber;
    // Only digits and a point may begin a number: this is what keeps out "inf" and "nan".
    std::size_t const first = !text.empty() && text.front() == '-' ? 1 : 0;
    if (text.size() <= first || !((text[first] >= '0' && text[first] <= '9') || text[first] == '.'))
        return StringUtil::kConversionStatus_NotANumber;
    return Convert(text, value, std::chars_format::general);
}

template <class Number>
Status ToIntegerOf(std::string_view text, Number& value, int base)
{
    text = Trimmed(text);
    if (base < 2 || base > 36 || !DropPlus(text))
        return StringUtil::kConversionStatus_NotANumber;
    return Convert(text, value, base);
}

}  // namespace

Status StringUtil::ToDouble(char const* text, double& value)
{
    return ToDoubleOf(ViewOf(text), value);
}
Status StringUtil::ToDouble(UTF8String const& text, double& value)
{
    return ToDoubleOf(text.View(), value);
}
Status StringUtil::ToDouble(std::string_view text, double& value)
{
    return ToDoubleOf(text, value);
}

Status StringUtil::ToInt(char const* text, int& value, int base)
{
    return ToIntegerOf(ViewOf(text), value, base);
}
Status StringUtil::ToInt(UTF8String const& text, int& value, int base)
{
    return ToIntegerOf(text.View(), value, base);
}

Status StringUtil::ToUnsignedlong(char const* text, unsigned long& value, int base)
{
    return ToIntegerOf(ViewOf(text), value, base);
}

IdSet StringUtil::Split(UTF8String const& text, UTF8String const& separator, bool skipEmpty)
{
    IdSet pieces;
    auto const add = [&](std::string_view piece)
    {
        if (!piece.empty() || !skipEmpty)
            pieces.AddWithoutUniquenessCheck(UTF8String(piece));
    };
    std::string_view rest = text.View();
    while (!separator.IsEmpty())
    {
        auto const at = rest.find(separator.View());
        if (at == std::string_view::npos)
            break;
        add(rest.substr(0, at));
        rest.remove_prefix(at + separator.Size());
    }
    add(rest);
    return pieces;
}

UTF8String StringUtil::FromUnsignedlong(unsigned long value, char const* format)
{
    constexpr std::string_view kPlace = "%lu";
    std::array<char, 24> digits;
    char const* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    std::string text(format ? std::string_view(format) : kPlace);
    auto const at = text.find(kPlace);
    if (at != std::string::npos)
        text.replace(at, kPlace.size(), digits.data(), static_cast<std::size_t>(end - digits.data()));
    return UTF8String(std::move(text));
}

}  // namespace KVR
