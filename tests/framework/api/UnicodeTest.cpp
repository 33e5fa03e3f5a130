#include "framework/api/Unicode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace
{

using namespace KVR;

constexpr char32_t kLastCodePoint = 0x10FFFF;

// The forms of one code point, worked out here on their own: by bit fields for UTF-8, by subtraction for UTF-16.
std::string Utf8Of(char32_t point)
{
    auto const byte = [](std::uint32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    std::uint32_t const p = point;
    if (p <= 0x7F)
        return {byte(p)};
    if (p <= 0x7FF)
        return {byte(192 + p / 64), byte(128 + p % 64)};
    if (p <= 0xFFFF)
        return {byte(224 + p / 4096), byte(128 + p / 64 % 64), byte(128 + p % 64)};
    return {byte(240 + p / 262144), byte(128 + p / 4096 % 64), byte(128 + p / 64 % 64), byte(128 + p % 64)};
}

std::u16string Utf16Of(char32_t point)
{
    std::uint32_t const p = point;
    if (p <= 0xFFFF)
        return {static_cast<char16_t>(p)};
    return {static_cast<char16_t>(0xD800 + (p - 0x10000) / 1024), static_cast<char16_t>(0xDC00 + (p - 0x10000) % 1024)};
}

std::wstring WideOf(char32_t point)
{
    if constexpr (sizeof(wchar_t) == 2)
    {
        std::wstring wide;
        for (char16_t const unit : Utf16Of(point))
            wide.push_back(static_cast<wchar_t>(unit));
        return wide;
    }
    return {static_cast<wchar_t>(point)};
}

bool IsSurrogate(char32_t point)
{
    return point >= 0xD800 && point <= 0xDFFF;
}

// In what follows R is U+FFFD.
std::wstring WithReplacements(std::string_view picture)
{
    std::wstring text;
    for (char const c : picture)
        text.push_back(c == 'R' ? L'\xFFFD' : static_cast<wchar_t>(static_cast<unsigned char>(c)));
    return text;
}

TEST(Unicode, EveryCodePointConvertsExactlyInEveryDirection)
{
    std::uint32_t checked = 0;
    for (char32_t point = 0; point <= kLastCodePoint; ++point)
    {
        if (IsSurrogate(point))
            continue;
        std::string const utf8 = Utf8Of(point);
        std::u16string const utf16 = Utf16Of(point);
        std::wstring const wide = WideOf(point);
        ASSERT_EQ(Unicode::WideFromUtf8(utf8), wide) << std::hex << std::uint32_t(point);
        ASSERT_EQ(Unicode::Utf8FromWide(wide), utf8) << std::hex << std::uint32_t(point);
        ASSERT_EQ(Unicode::Utf8FromUtf16(utf16), utf8) << std::hex << std::uint32_t(point);
        ASSERT_EQ(Unicode::Utf16FromUtf8(utf8), utf16) << std::hex << std::uint32_t(point);
        ASSERT_EQ(Unicode::WideFromUtf16(utf16), wide) << std::hex << std::uint32_t(point);
        ++checked;
    }
    EXPECT_EQ(checked, 0x110000U - 0x800U);
}

TEST(Unicode, EveryCodePointConvertsExactlyInTheMiddleOfAText)
{
    // All planes in one text, so that each code point has neighbours of its own length and of others.
    std::string utf8;
    std::u16string utf16;
    std::wstring wide;
    for (char32_t point = 0; point <= kLastCodePoint; ++point)
    {
        if (IsSurrogate(point))
            continue;
        for (char32_t const put : {point, U'a'})
        {
            utf8 += Utf8Of(put);
            utf16 += Utf16Of(put);
            wide += WideOf(put);
        }
    }
    EXPECT_TRUE(Unicode::WideFromUtf8(utf8) == wide);
    EXPECT_TRUE(Unicode::Utf8FromWide(wide) == utf8);
    EXPECT_TRUE(Unicode::Utf8FromUtf16(utf16) == utf8);
    EXPECT_TRUE(Unicode::Utf16FromUtf8(utf8) == utf16);
    EXPECT_TRUE(Unicode::WideFromUtf16(utf16) == wide);
}

TEST(Unicode, EveryLoneSurrogateBecomesTheReplacementCharacter)
{
    for (char32_t unit = 0xD800; unit <= 0xDFFF; ++unit)
    {
        std::u16string const alone{static_cast<char16_t>(unit)};
        std::u16string const amid{u'a', static_cast<char16_t>(unit), u'b'};
        std::wstring const wide{L'a', static_cast<wchar_t>(unit), L'b'};
        ASSERT_EQ(Unicode::Utf8FromUtf16(alone), "\xEF\xBF\xBD");
        ASSERT_EQ(Unicode::Utf8FromUtf16(amid),
                  "a\xEF\xBF\xBD"
                  "b");
        ASSERT_EQ(Unicode::WideFromUtf16(amid),
                  L"a\xFFFD"
                  L"b");
        ASSERT_EQ(Unicode::Utf8FromWide(wide),
                  "a\xEF\xBF\xBD"
                  "b");
    }
}

TEST(Unicode, SurrogatesInTheWrongOrderAreTwoLoneOnes)
{
    EXPECT_EQ(Unicode::Utf8FromUtf16(u"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Unicode, TheSecondOfTwoHighSurrogatesStillFindsItsPartner)
{
    EXPECT_EQ(Unicode::Utf8FromUtf16(u"\xD83D\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(Unicode, AHighSurrogateAtTheEndStandsAlone)
{
    EXPECT_EQ(Unicode::Utf8FromUtf16(u"x\xD83D"), "x\xEF\xBF\xBD");
    std::u16string_view const whole = u"x\xD83D\xDE00";
    EXPECT_EQ(Unicode::Utf8FromUtf16(whole.substr(0, 2)), "x\xEF\xBF\xBD") << "what stands behind the end is not read";
}

TEST(Unicode, WideValuesThatAreNoCodePointsBecomeTheReplacementCharacter)
{
    if constexpr (sizeof(wchar_t) == 4)
    {
        for (std::uint32_t const value : {0x110000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_EQ(Unicode::Utf8FromWide(std::wstring{L'a', static_cast<wchar_t>(value)}), "a\xEF\xBF\xBD");
    }
    EXPECT_EQ(Unicode::Utf8FromWide(L"\xFFFF"), "\xEF\xBF\xBF") << "a noncharacter is a code point all the same";
}

TEST(Unicode, ZeroIsACharacterLikeAnyOther)
{
    EXPECT_EQ(Unicode::WideFromUtf8(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Unicode::Utf8FromUtf16(std::u16string_view(u"\0\0", 2)), std::string(2, '\0'));
}

TEST(Unicode, TheEmptyTextStaysEmpty)
{
    EXPECT_EQ(Unicode::WideFromUtf8(""), L"");
    EXPECT_EQ(Unicode::WideFromUtf8(std::string_view()), L"");
    EXPECT_EQ(Unicode::Utf8FromWide(L""), "");
    EXPECT_EQ(Unicode::Utf8FromUtf16(u""), "");
    EXPECT_EQ(Unicode::Utf16FromUtf8(""), u"");
    EXPECT_EQ(Unicode::WideFromUtf16(u""), L"");
}

struct BadBytes
{
    char const* what;
    std::string bytes;
    // With R for U+FFFD.
    char const* picture;

    friend std::ostream& operator<<(std::ostream& out, BadBytes const& bad) { return out << bad.what; }
};

class UnicodeBadBytes : public testing::TestWithParam<BadBytes>
{
};

TEST_P(UnicodeBadBytes, EachLongestIllFormedRunIsOneReplacementCharacter)
{
    BadBytes const& bad = GetParam();
    std::wstring const wide = WithReplacements(bad.picture);
    EXPECT_EQ(Unicode::WideFromUtf8(bad.bytes), wide);
    EXPECT_EQ(Unicode::Utf16FromUtf8(bad.bytes), std::u16string(wide.begin(), wide.end()));
    EXPECT_EQ(Unicode::WideFromUtf8("<" + bad.bytes + ">"), L"<" + wide + L">");
    EXPECT_EQ(UTF16String(UTF8String(bad.bytes)).View(), wide);
}

INSTANTIATE_TEST_SUITE_P(
    Unicode, UnicodeBadBytes,
    testing::Values(
        BadBytes{"a stray continuation byte", "\x80", "R"}, BadBytes{"the last one", "\xBF", "R"},
        BadBytes{"three stray continuation bytes", "\x80\xBF\x80", "RRR"},
        BadBytes{"the overlong zero", "\xC0\x80", "RR"}, BadBytes{"an overlong slash", "\xC1\xAF", "RR"},
        BadBytes{"an overlong form of three", "\xE0\x80\xAF", "RRR"},
        BadBytes{"the last overlong form of three", "\xE0\x9F\xBF", "RRR"},
        BadBytes{"an overlong form of four", "\xF0\x80\x80\xAF", "RRRR"},
        BadBytes{"the last overlong form of four", "\xF0\x8F\xBF\xBF", "RRRR"},
        BadBytes{"the first surrogate", "\xED\xA0\x80", "RRR"}, BadBytes{"the last surrogate", "\xED\xBF\xBF", "RRR"},
        BadBytes{"a pair of surrogates", "\xED\xA0\xBD\xED\xB8\x80", "RRRRRR"},
        BadBytes{"the first value beyond the last plane", "\xF4\x90\x80\x80", "RRRR"},
        BadBytes{"a lead byte beyond the last plane", "\xF5\x80\x80\x80", "RRRR"},
        BadBytes{"a form of five", "\xF8\x88\x80\x80\x80", "RRRRR"},
        BadBytes{"a form of six", "\xFC\x84\x80\x80\x80\x80", "RRRRRR"}, BadBytes{"FE and FF", "\xFE\xFF", "RR"},
        BadBytes{"two cut to one", "\xC3", "R"}, BadBytes{"three cut to one", "\xE2", "R"},
        BadBytes{"three cut to two", "\xE2\x82", "R"}, BadBytes{"four cut to one", "\xF0", "R"},
        BadBytes{"four cut to two", "\xF0\x9F", "R"}, BadBytes{"four cut to three", "\xF0\x9F\x98", "R"},
        BadBytes{"a cut form before a letter", "\xE2\x82x", "Rx"},
        BadBytes{"a cut form before a lead byte", "\xF0\x9F\xC3\x61", "RRa"},
        BadBytes{"two cut forms", "\xF0\x9F\x98\xE2\x82", "RR"},
        BadBytes{"a whole form with one byte too many", "\x7F\x80", "\x7FR"}, BadBytes{"Latin-1", "B\xE4r", "BRr"},
        BadBytes{"a mix",
                 "a\xF1\x80\x80\xE1\x80\xC2"
                 "b\x80"
                 "c\x80\xBF"
                 "d",
                 "aRRRbRcRRd"}));

}  // namespace
