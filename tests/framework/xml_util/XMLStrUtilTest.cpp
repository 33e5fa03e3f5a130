#include "framework/xml_util/XMLStrUtil.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "framework/xml_util/XStr.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/CommaLocale.h"

namespace
{

using namespace KVR;

std::string Narrow(XMLCh const* text)
{
    return std::string(XMLStrUtil::XMLStrToAStr(text).View());
}
std::wstring Wide(XMLCh const* text)
{
    return std::wstring(XMLStrUtil::XMLStrToWStr(text).View());
}

TEST(DocumentText, BecomesNarrowTextInUtf8)
{
    EXPECT_EQ(Narrow(u"p1"), "p1");
    EXPECT_EQ(Narrow(u"R\u00E4der \u20AC \u65E5"), "Räder \xE2\x82\xAC \xE6\x97\xA5");
}

TEST(DocumentText, BecomesWideText)
{
    EXPECT_EQ(Wide(u"p1"), L"p1");
    EXPECT_EQ(Wide(u"R\u00E4der \u20AC \u65E5"), L"R\u00E4der \u20AC \u65E5");
}

TEST(DocumentText, IsEmptyForANullPointer)
{
    EXPECT_EQ(Narrow(nullptr), "");
    EXPECT_EQ(Wide(nullptr), L"");
    EXPECT_EQ(Narrow(u""), "");
    EXPECT_EQ(Wide(u""), L"");
}

TEST(DocumentText, KeepsCharactersOfSurrogatePairs)
{
    EXPECT_EQ(Narrow(u"<\U0001F600>"), "<\xF0\x9F\x98\x80>");
    EXPECT_EQ(Wide(u"<\U0001F600>"), L"<\U0001F600>");
    EXPECT_EQ(Narrow(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(Wide(u"\U00010000\U0010FFFF"), L"\U00010000\U0010FFFF");
}

TEST(DocumentText, GivesAReplacementCharacterForEachLoneSurrogate)
{
    constexpr char16_t kHighInside[] = {u'a', 0xD800, u'b', 0};
    constexpr char16_t kLowInside[] = {u'a', 0xDFFF, u'b', 0};
    constexpr char16_t kHighAtEnd[] = {u'a', 0xDBFF, 0};
    constexpr char16_t kWrongOrder[] = {0xDC00, 0xD800, 0};
    EXPECT_EQ(Narrow(kHighInside),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(Wide(kHighInside), L"a\uFFFDb");
    EXPECT_EQ(Wide(kLowInside), L"a\uFFFDb");
    EXPECT_EQ(Wide(kHighAtEnd), L"a\uFFFD");
    EXPECT_EQ(Wide(kWrongOrder), L"\uFFFD\uFFFD");
    EXPECT_EQ(Narrow(kWrongOrder), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

struct IntRow
{
    char16_t const* text;
    int value;
};

constexpr IntRow kIntegers[] = {
    {u"0", 0},           {u"1", 1},       {u"+1", 1},          {u"-1", -1},
    {u"007", 7},         {u"  12  ", 12}, {u"\t\r\n12\n", 12}, {u"2147483647", 2147483647},
    {u"-0", 0},          {u"+0", 0},      {u" -5 ", -5},       {u"-2147483648", -2147483647 - 1},
    {u"00000000001", 1},
};

constexpr char16_t const* kNoIntegers[] = {
    u"",       u" ",       u"one", u"2147483648", u"-2147483649", u"99999999999999999999",
    u"1.0",    u"1.",      u"1e2", u"0x10",       u"1 2",         u"1,0",
    u"12a",    u"a12",     u"+",   u"-",          u"+-1",         u"--1",
    u"-+1",    u"++1",     u"1-",  u"True",       u"inf",         u"\uFF11",
    u"\u0661", u"1\u00A0", u"\\1", u"1;",         u"\u00A0 1",
};

TEST(IntegerText, IsReadWithSignAndWhiteSpace)
{
    for (IntRow const& row : kIntegers)
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(row.text), row.value) << Narrow(row.text);
}

TEST(IntegerText, GivesZeroForATextThatIsNoInteger)
{
    for (char16_t const* const text : kNoIntegers)
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(text), 0) << Narrow(text);
    EXPECT_EQ(XMLStrUtil::XMLStrToInt(nullptr), 0);
}

TEST(IntegerText, MayHaveAnyNumberOfDigits)
{
    for (std::size_t length = 240; length < 280; ++length)
    {
        EXPECT_EQ(XMLStrUtil::XMLStrToInt((std::u16string(length - 1, u'0') + u'7').c_str()), 7) << length;
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(std::u16string(length, u'7').c_str()), 0) << length;
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(std::u16string(u"7").append(length - 1, u' ').c_str()), 7) << length;
    }
    EXPECT_EQ(XMLStrUtil::XMLStrToInt((std::u16string(1000000, u'0') + u'7').c_str()), 7);
    EXPECT_EQ(XMLStrUtil::XMLStrToInt(std::u16string(1000000, u'1').c_str()), 0);
}

struct DoubleRow
{
    char16_t const* text;
    double value;
};

constexpr DoubleRow kDoubles[] = {
    {u"0", 0.0},
    {u"1", 1.0},
    {u"+1", 1.0},
    {u"-1.5", -1.5},
    {u"1234.5", 1234.5},
    {u".5", 0.5},
    {u"-.5", -0.5},
    {u"5.", 5.0},
    {u"1e3", 1000.0},
    {u"1E3", 1000.0},
    {u"1e+3", 1000.0},
    {u"-1.25e-2", -0.0125},
    {u"  2.5  ", 2.5},
    {u"\t\r\n2.5\n", 2.5},
    {u"007.50", 7.5},
    {u"0.1", 0.1},
    {u"3.141592653589793", 3.141592653589793},
    {u"1.7976931348623157e308", 1.7976931348623157e308},
    {u"2.2250738585072014e-308", 2.2250738585072014e-308},
};

constexpr char16_t const* kNoDoubles[] = {
    u"",      u" ",    u"one",  u"inf",  u"-inf", u"infinity", u"nan",    u"NaN",     u"-nan",
    u"0x1p3", u"0x10", u"1,5",  u"1.5,", u"1.5x", u"x1.5",     u"1 2",    u"1..5",    u"1.5.2",
    u".",     u"-",    u"+",    u"+-1",  u"--1",  u"1e",       u"e3",     u"1e400",   u"-1e400",
    u"1d3",   u"1f",   u"1.5f", u"1_0",  u"1e+",  u"$1",       u"\uFF11", u"1\u00A0", u"1e999999999999999999999",
};

TEST(DoubleText, IsReadInDecimalAndScientificNotation)
{
    for (DoubleRow const& row : kDoubles)
    {
        double value = -77.0;
        EXPECT_TRUE(XMLStrUtil::XMLStrToDouble(row.text, value)) << Narrow(row.text);
        EXPECT_EQ(value, row.value) << Narrow(row.text);
    }
}

TEST(DoubleText, LeavesTheOutputAloneWhenItIsNoNumber)
{
    for (char16_t const* const text : kNoDoubles)
    {
        double value = -77.0;
        EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(text, value)) << Narrow(text);
        EXPECT_EQ(value, -77.0) << Narrow(text);
    }
    double value = -77.0;
    EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(nullptr, value));
    EXPECT_EQ(value, -77.0);
}

TEST(DoubleText, MayHaveAnyNumberOfDigits)
{
    for (std::size_t length = 240; length < 280; ++length)
    {
        double value = -77.0;
        EXPECT_TRUE(XMLStrUtil::XMLStrToDouble(std::u16string(u"0.").append(length - 2, u'3').c_str(), value))
            << length;
        EXPECT_EQ(value, 1.0 / 3.0) << length;
        EXPECT_TRUE(XMLStrUtil::XMLStrToDouble((std::u16string(length - 1, u'0') + u'7').c_str(), value)) << length;
        EXPECT_EQ(value, 7.0) << length;
        EXPECT_FALSE(XMLStrUtil::XMLStrToDouble((std::u16string(length - 1, u'1') + u'x').c_str(), value)) << length;
        EXPECT_EQ(value, 7.0) << length;
    }
    double value = -77.0;
    EXPECT_TRUE(XMLStrUtil::XMLStrToDouble(std::u16string(u"0.").append(1000000, u'3').c_str(), value));
    EXPECT_EQ(value, 1.0 / 3.0);
    EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(std::u16string(1000000, u'3').c_str(), value));
    EXPECT_EQ(value, 1.0 / 3.0);
}

TEST(NumberText, OfUpTo256CharactersIsReadWithoutAllocation)
{
    std::u16string const text = std::u16string(255, u'0') + u'7';
    double asDouble = 0.0;
    AllocationMeter const meter;
    bool const isNumber = XMLStrUtil::XMLStrToDouble(text.c_str(), asDouble);
    int const asInt = XMLStrUtil::XMLStrToInt(text.c_str());
    std::size_t const count = AllocationMeter::Count();
    EXPECT_TRUE(isNumber);
    EXPECT_EQ(asDouble, 7.0);
    EXPECT_EQ(asInt, 7);
    EXPECT_EQ(count, 0U);
}

using DocumentNumberUnderACommaLocale = UnderACommaLocale;

TEST_F(DocumentNumberUnderACommaLocale, IsReadAsEver)
{
    for (DoubleRow const& row : kDoubles)
    {
        double value = -77.0;
        EXPECT_TRUE(XMLStrUtil::XMLStrToDouble(row.text, value)) << Narrow(row.text);
        EXPECT_EQ(value, row.value) << Narrow(row.text);
    }
    for (IntRow const& row : kIntegers)
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(row.text), row.value) << Narrow(row.text);
}

TEST_F(DocumentNumberUnderACommaLocale, IsRefusedAsEver)
{
    double value = -77.0;
    for (char16_t const* const text : kNoDoubles)
        EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(text, value)) << Narrow(text);
    for (char16_t const* const text : {u"1,5", u"1.234,5", u"1.234.567"})
        EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(text, value)) << Narrow(text);
    EXPECT_EQ(value, -77.0);
    for (char16_t const* const text : kNoIntegers)
        EXPECT_EQ(XMLStrUtil::XMLStrToInt(text), 0) << Narrow(text);
    EXPECT_EQ(XMLStrUtil::XMLStrToInt(u"1.234"), 0);
}

TEST_F(DocumentNumberUnderACommaLocale, IsExactAsText)
{
    EXPECT_EQ(Narrow(u"R\u00E4der \U0001F600"), "Räder \xF0\x9F\x98\x80");
    EXPECT_EQ(Wide(u"R\u00E4der \U0001F600"), L"R\u00E4der \U0001F600");
}

std::vector<std::string> Pieces(char const* text, char const* separator)
{
    std::vector<UTF8String> pieces;
    XMLStrUtil::SplitStr(text, separator, pieces);
    std::vector<std::string> result;
    for (UTF8String const& piece : pieces)
        result.emplace_back(piece.View());
    return result;
}

using Texts = std::vector<std::string>;

TEST(SplitStr, GivesThePiecesBetweenTheSeparators)
{
    EXPECT_EQ(Pieces("a,b,c", ","), Texts({"a", "b", "c"}));
    EXPECT_EQ(Pieces("a", ","), Texts({"a"}));
    EXPECT_EQ(Pieces("1 2 3", " "), Texts({"1", "2", "3"}));
}

TEST(SplitStr, DropsEmptyPieces)
{
    EXPECT_EQ(Pieces("a, b,,c", ","), Texts({"a", "b", "c"}));
    EXPECT_EQ(Pieces(",,a,", ","), Texts({"a"}));
    EXPECT_EQ(Pieces(", ,\t,\r\n", ","), Texts());
    EXPECT_EQ(Pieces("", ","), Texts());
    EXPECT_EQ(Pieces("  1   2 ", " "), Texts({"1", "2"}));
}

TEST(SplitStr, TrimsBlanksTabsAndLineEndsButNotWithinAPiece)
{
    EXPECT_EQ(Pieces(" \t a b \r\n,\nc\t", ","), Texts({"a b", "c"}));
    EXPECT_EQ(Pieces("1\t 2\n", " "), Texts({"1", "2"}));
}

TEST(SplitStr, KeepsRepeatsAndTheirOrder)
{
    EXPECT_EQ(Pieces("b,a,b", ","), Texts({"b", "a", "b"}));
}

TEST(SplitStr, TakesSeparatorsOfSeveralBytes)
{
    EXPECT_EQ(Pieces("a::b:c", "::"), Texts({"a", "b:c"}));
    EXPECT_EQ(Pieces("a:::b", "::"), Texts({"a", ":b"}));
}

TEST(SplitStr, GivesTheWholeTextForAnEmptySeparator)
{
    EXPECT_EQ(Pieces(" a,b ", ""), Texts({"a,b"}));
}

TEST(SplitStr, AppendsToWhatIsThere)
{
    std::vector<UTF8String> pieces = {"first"};
    XMLStrUtil::SplitStr("a,b", ",", pieces);
    EXPECT_EQ(pieces, std::vector<UTF8String>({"first", "a", "b"}));
}

TEST(SplitStr, KeepsTheBytesOfOtherScripts)
{
    EXPECT_EQ(Pieces("Räder, \xE6\x97\xA5", ","), Texts({"Räder", "\xE6\x97\xA5"}));
}

}  // namespace
