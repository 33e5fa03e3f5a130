#include "framework/api/Unicode.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace KVR::Unicode
{

namespace
{

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;

bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes one code point off the front of the text, which is not empty. Units of 16 bits are UTF-16, of 32 bits UTF-32.
template <class Unit>
char32_t TakeFront(std::basic_string_view<Unit>& text)
{
    auto const first = static_cast<char32_t>(text[0]);
    text.remove_prefix(1);
    if constexpr (sizeof(Unit) == 2)
    {
        if (IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(static_cast<char32_t>(text[0])))
        {
            char32_t const second = static_cast<char32_t>(text[0]);
            text.remove_prefix(1);
            return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
    }
    return first > kLastCodePoint || IsHighSurrogate(first) || IsLowSurrogate(first) ? kReplacement : first;
}

// The length of a UTF-8 sequence by its first byte, and the range that its second byte must lie in; that range is what
// rules out overlong forms, surrogates and values beyond the last code point.
struct Utf8Form
{
    int length;
    unsigned char secondLow;
    unsigned char secondHigh;
};

Utf8Form FormOf(unsigned char first)
{
    if (first >= 0xC2 && first <= 0xDF)
        return {2, 0x80, 0xBF};
    if (first == 0xE0)
        return {3, 0xA0, 0xBF};
    if (first == 0xED)
        return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF)
        return {3, 0x80, 0xBF};
    if (first == 0xF0)
        return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3)
        return {4, 0x80, 0xBF};
    if (first == 0xF4)
        return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

char32_t TakeFront(std::string_view& bytes)
{
    auto const first = static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(1);
    if (first < 0x80)
        return first;
    Utf8Form const form = FormOf(first);
    if (form.length == 0)
        return kReplacement;
    char32_t point = first & (0x7FU >> form.length);
    for (int i = 1; i < form.length; ++i)
    {
        auto const low = i == 1 ? form.secondLow : static_cast<unsigned char>(0x80);
        auto const high = i == 1 ? form.secondHigh : static_cast<unsigned char>(0xBF);
        if (bytes.empty())
            return kReplacement;
        auto const next = static_cast<unsigned char>(bytes[0]);
        if (next < low || next > high)
            return kReplacement;
        point = (point << 6) | (next & 0x3FU);
        bytes.remove_prefix(1);
    }
    return point;
}

void Append(std::string& out, char32_t point)
{
    auto const put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (point < 0x80)
    {
        put(point);
        return;
    }
    if (point < 0x800)
    {
        put(0xC0 | (point >> 6));
    }
    else
    {
        if (point < 0x10000)
        {
            put(0xE0 | (point >> 12));
        }
        else
        {
            put(0xF0 | (point >> 18));
            put(0x80 | ((point >> 12) & 0x3F));
        }
        put(0x80 | ((point >> 6) & 0x3F));
    }
    put(0x80 | (point & 0x3F));
}

template <class Unit>
void Append(std::basic_string<Unit>& out, char32_t point)
{
    if constexpr (sizeof(Unit) == 2)
    {
        if (point >= 0x10000)
        {
            out.push_back(static_cast<Unit>(0xD800 + ((point - 0x10000) >> 10)));
            out.push_back(static_cast<Unit>(0xDC00 + ((point - 0x10000) & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<Unit>(point));
}

// Most text of a scene is ASCII, which every form spells unit by unit: runs of it are copied, and what stands between
// them is decoded.
template <class In>
std::size_t AsciiLength(In text)
{
    using Unit = std::make_unsigned_t<typename In::value_type>;
    // Bits of several units together: quicker than to ask each by itself.
    constexpr std::size_t kBlock = 8;
    std::size_t ascii = 0;
    for (; ascii + kBlock <= text.size(); ascii += kBlock)
    {
        Unit bits = 0;
        for (std::size_t i = 0; i < kBlock; ++i)
            bits |= static_cast<Unit>(text[ascii + i]);
        if (bits >= 0x80)
            break;
    }
    while (ascii < text.size() && static_cast<Unit>(text[ascii]) < 0x80)
        ++ascii;
    return ascii;
}

template <class Out, class In>
void AppendAscii(Out& out, In text)
{
    std::size_t const size = out.size();
    out.resize(size + text.size());
    std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(size),
                   [](auto unit) { return static_cast<typename Out::value_type>(unit); });
}

template <class Out, class In>
void DecodeInto(Out& out, In text)
{
    while (!text.empty())
    {
        std::size_t const ascii = AsciiLength(text);
        AppendAscii(out, text.substr(0, ascii));
        text.remove_prefix(ascii);
        if (!text.empty())
            Append(out, TakeFront(text));
    }
}

template <class Out, class In>
Out Convert(In text)
{
    Out out;
    out.reserve(text.size());
    DecodeInto(out, text);
    return out;
}

}  // namespace

std::string Utf8FromUtf16(std::u16string_view text)
{
    return Convert<std::string>(text);
}
void AppendUtf8(std::string& bytes, std::u16string_view text)
{
    DecodeInto(bytes, text);
}
std::string Utf8FromWide(std::wstring_view text)
{
    return Convert<std::string>(text);
}
std::wstring WideFromUtf8(std::string_view bytes)
{
    return Convert<std::wstring>(bytes);
}
std::wstring WideFromUtf16(std::u16string_view text)
{
    return Convert<std::wstring>(text);
}
std::u16string Utf16FromUtf8(std::string_view bytes)
{
    return Convert<std::u16string>(bytes);
}

}  // namespace KVR::Unicode
