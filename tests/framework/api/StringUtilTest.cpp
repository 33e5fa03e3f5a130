#include "framework/api/StringUtil.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace KVR;

constexpr double kDoubleBefore = -123.25;
constexpr int kIntBefore = -77;
constexpr unsigned long kUnsignedBefore = 77;

IdSet Pieces(std::initializer_list<char const*> texts)
{
    IdSet pieces;
    for (char const* const text : texts)
        pieces.AddWithoutUniquenessCheck(text);
    return pieces;
}

struct DoubleText
{
    char const* text;
    double value;
};

TEST(StringUtil, ToDoubleTakesDecimalAndScientificNotation)
{
    for (auto const& [text, value] : std::vector<DoubleText>{{"0", 0.0},
                                                             {"1", 1.0},
                                                             {"-1", -1.0},
                                                             {"+1", 1.0},
                                                             {"007", 7.0},
                                                             {"1.5", 1.5},
                                                             {"1.", 1.0},
                                                             {".5", 0.5},
                                                             {"-.5", -0.5},
                                                             {"+.5", 0.5},
                                                             {"1e3", 1000.0},
                                                             {"1E3", 1000.0},
                                                             {"1e+3", 1000.0},
                                                             {"1e-3", 0.001},
                                                             {"-2.5e-1", -0.25},
                                                             {"1.e1", 10.0},
                                                             {"0.1", 0.1},
                                                             {"3.141592653589793", 3.141592653589793},
                                                             {"1.7976931348623157e308", 1.7976931348623157e308},
                                                             {"2.2250738585072014e-308", 2.2250738585072014e-308},
                                                             {"4.9406564584124654e-324", 4.9406564584124654e-324},
                                                             {"9007199254740993", 9007199254740992.0},
                                                             {"0e999999999", 0.0},
                                                             {"000000000000000000000000000000000000001", 1.0},
                                                             {" 1", 1.0},
                                                             {"1 ", 1.0},
                                                             {" \t\n\v\f\r1.5\r\f\v\n\t ", 1.5}})
    {
        double value0 = kDoubleBefore;
        EXPECT_EQ(StringUtil::ToDouble(text, value0), StringUtil::kConversionStatus_Success) << text;
        EXPECT_EQ(value0, value) << text;
        double value1 = kDoubleBefore;
        EXPECT_EQ(StringUtil::ToDouble(UTF8String(text), value1), 0) << text;
        EXPECT_EQ(value1, value) << text;
        double value2 = kDoubleBefore;
        EXPECT_EQ(StringUtil::ToDouble(std::string_view(text), value2), 0) << text;
        EXPECT_EQ(value2, value) << text;
    }
}

TEST(StringUtil, ToDoubleKeepsTheSignOfZero)
{
    double value = kDoubleBefore;
    ASSERT_EQ(StringUtil::ToDouble("-0.0", value), 0);
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(std::signbit(value));
}

TEST(StringUtil, ToDoubleTakesVeryLongTexts)
{
    double value = kDoubleBefore;
    std::string const zeros(100000, '0');
    ASSERT_EQ(StringUtil::ToDouble(UTF8String("1." + zeros), value), 0);
    EXPECT_EQ(value, 1.0);
    ASSERT_EQ(StringUtil::ToDouble(UTF8String(std::string(100000, ' ') + "2"), value), 0);
    EXPECT_EQ(value, 2.0);
}

TEST(StringUtil, ToDoubleRefusesWhatIsNoNumberAndLeavesTheOutputAlone)
{
    for (char const* const text :
         {"",      " ",        "abc",  "1,5",   "1.5,",  "1x",      "x1",        "1 2",       "1.2.3",        "--1",
          "++1",   "+-1",      "-+1",  "+ 1",   "- 1",   "+",       "-",         ".",         "-.",           "e5",
          ".e5",   "1e",       "1e+",  "1e-",   "1e5.5", "1e 5",    "inf",       "INF",       "-inf",         "+inf",
          "Inf",   "infinity", "nan",  "NaN",   "-nan",  "+nan",    "nan(1)",    "0x10",      "0X1p3",        "0x",
          "1d5",   "1f",       "1.0L", "1'000", "1_000", "1.000,5", "\xC2\xA0x", "1\xC2\xA0", "\xEF\xBC\x91", "\xFF",
          "1e5e5", "0b1",      "#1",   "$1",    "1%"})
    {
        double value = kDoubleBefore;
        EXPECT_EQ(StringUtil::ToDouble(text, value), StringUtil::kConversionStatus_NotANumber) << text;
        EXPECT_EQ(value, kDoubleBefore) << text;
    }
}

TEST(StringUtil, ToDoubleRefusesWhatIsOutOfRangeAndLeavesTheOutputAlone)
{
    for (char const* const text :
         {"1e309", "-1e309", "1.8e308", "1e99999999999999999999", "1e-400", "-1e-400", "1e-99999999999999999999"})
    {
        double value = kDoubleBefore;
        EXPECT_EQ(StringUtil::ToDouble(text, value), StringUtil::kConversionStatus_OutOfRange) << text;
        EXPECT_EQ(value, kDoubleBefore) << text;
    }
}

TEST(StringUtil, ToDoubleReadsNotBeyondTheEndOfItsText)
{
    double value = kDoubleBefore;
    EXPECT_EQ(StringUtil::ToDouble(std::string_view("123456", 3), value), 0);
    EXPECT_EQ(value, 123.0);
    EXPECT_NE(StringUtil::ToDouble(std::string_view("1e5", 2), value), 0);
    EXPECT_NE(StringUtil::ToDouble(std::string_view(), value), 0);
    EXPECT_EQ(value, 123.0);
}

TEST(StringUtil, ANullTextDoesNotConvert)
{
    double asDouble = kDoubleBefore;
    int asInt = kIntBefore;
    unsigned long asUnsigned = kUnsignedBefore;
    char const* const none = nullptr;
    EXPECT_NE(StringUtil::ToDouble(none, asDouble), 0);
    EXPECT_NE(StringUtil::ToInt(none, asInt, 10), 0);
    EXPECT_NE(StringUtil::ToUnsignedlong(none, asUnsigned, 10), 0);
    EXPECT_EQ(asDouble, kDoubleBefore);
    EXPECT_EQ(asInt, kIntBefore);
    EXPECT_EQ(asUnsigned, kUnsignedBefore);
}

TEST(StringUtil, AZeroByteInTheTextDoesNotConvert)
{
    double asDouble = kDoubleBefore;
    int asInt = kIntBefore;
    UTF8String const text(std::string("1\0", 2));
    EXPECT_NE(StringUtil::ToDouble(text, asDouble), 0);
    EXPECT_NE(StringUtil::ToInt(text, asInt, 10), 0);
    EXPECT_EQ(asDouble, kDoubleBefore);
    EXPECT_EQ(asInt, kIntBefore);
}

struct IntText
{
    char const* text;
    int base;
    int value;
};

TEST(StringUtil, ToIntTakesDigitsOfTheBaseWithAnOptionalSign)
{
    for (auto const& [text, base, value] : std::vector<IntText>{{"0", 10, 0},
                                                                {"-0", 10, 0},
                                                                {"42", 10, 42},
                                                                {"+42", 10, 42},
                                                                {"-42", 10, -42},
                                                                {"0042", 10, 42},
                                                                {"2147483647", 10, INT_MAX},
                                                                {"-2147483648", 10, INT_MIN},
                                                                {" \t\n\v\f\r7\r\f\v\n\t ", 10, 7},
                                                                {"ff", 16, 255},
                                                                {"-FF", 16, -255},
                                                                {"101", 2, 5},
                                                                {"777", 8, 511},
                                                                {"zZ", 36, 1295}})
    {
        int value0 = kIntBefore;
        EXPECT_EQ(StringUtil::ToInt(text, value0, base), StringUtil::kConversionStatus_Success) << text;
        EXPECT_EQ(value0, value) << text;
        int value1 = kIntBefore;
        EXPECT_EQ(StringUtil::ToInt(UTF8String(text), value1, base), 0) << text;
        EXPECT_EQ(value1, value) << text;
    }
}

TEST(StringUtil, ToIntRefusesWhatIsNoNumberAndLeavesTheOutputAlone)
{
    for (char const* const text :
         {"",    " ",   "x",   "1.0", "1,0", "1e3", "1 2", "0x10",      "--1",      "+-1",   "-+1",
          "++1", "+ 1", "- 1", "+",   "-",   "12a", "a12", "1\xC2\xA0", "\xD9\xA1", "1'000", "true"})
    {
        int value = kIntBefore;
        EXPECT_EQ(StringUtil::ToInt(text, value, 10), StringUtil::kConversionStatus_NotANumber) << text;
        EXPECT_EQ(value, kIntBefore) << text;
    }
}

TEST(StringUtil, ToIntRefusesDigitsOutsideTheBaseAndBasesOutsideTheRange)
{
    int value = kIntBefore;
    EXPECT_NE(StringUtil::ToInt("2", value, 2), 0);
    EXPECT_NE(StringUtil::ToInt("8", value, 8), 0);
    EXPECT_NE(StringUtil::ToInt("a", value, 10), 0);
    EXPECT_NE(StringUtil::ToInt("0x1", value, 16), 0);
    for (int const base : {INT_MIN, -10, -1, 0, 1, 37, INT_MAX})
        EXPECT_NE(StringUtil::ToInt("1", value, base), 0) << base;
    EXPECT_EQ(value, kIntBefore);
}

TEST(StringUtil, ToIntRefusesWhatIsOutOfRangeAndLeavesTheOutputAlone)
{
    for (char const* const text : {"2147483648", "-2147483649", "99999999999999999999999999", "-9999999999"})
    {
        int value = kIntBefore;
        EXPECT_EQ(StringUtil::ToInt(text, value, 10), StringUtil::kConversionStatus_OutOfRange) << text;
        EXPECT_EQ(value, kIntBefore) << text;
    }
}

TEST(StringUtil, ToUnsignedlongTakesDigitsWithAnOptionalPlus)
{
    unsigned long value = kUnsignedBefore;
    EXPECT_EQ(StringUtil::ToUnsignedlong("0", value, 10), 0);
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(StringUtil::ToUnsignedlong(" +42\n", value, 10), 0);
    EXPECT_EQ(value, 42U);
    EXPECT_EQ(StringUtil::ToUnsignedlong(std::to_string(ULONG_MAX).c_str(), value, 10), 0);
    EXPECT_EQ(value, ULONG_MAX);
    EXPECT_EQ(StringUtil::ToUnsignedlong("fF", value, 16), 0);
    EXPECT_EQ(value, 255U);
}

TEST(StringUtil, ToUnsignedlongRefusesAMinusAndLeavesTheOutputAlone)
{
    for (char const* const text : {"", " ", "-1", "-0", "+-1", "-", "+", "++1", "1.0", "1e3", "0x1", "1 2", "x"})
    {
        unsigned long value = kUnsignedBefore;
        EXPECT_EQ(StringUtil::ToUnsignedlong(text, value, 10), StringUtil::kConversionStatus_NotANumber) << text;
        EXPECT_EQ(value, kUnsignedBefore) << text;
    }
}

TEST(StringUtil, ToUnsignedlongRefusesWhatIsOutOfRangeAndLeavesTheOutputAlone)
{
    unsigned long value = kUnsignedBefore;
    std::string const tenTimes = std::to_string(ULONG_MAX) + "0";
    EXPECT_EQ(StringUtil::ToUnsignedlong(tenTimes.c_str(), value, 10), StringUtil::kConversionStatus_OutOfRange);
    EXPECT_EQ(value, kUnsignedBefore);
}

TEST(StringUtil, SplitKeepsPiecesInOrderWithRepeats)
{
    EXPECT_EQ(StringUtil::Split("0,0,1", ",", false), Pieces({"0", "0", "1"}));
    EXPECT_EQ(StringUtil::Split("a", ",", false), Pieces({"a"}));
    EXPECT_EQ(StringUtil::Split(" a , b", ",", false), Pieces({" a ", " b"}));
}

TEST(StringUtil, SplitKeepsEmptyPieces)
{
    EXPECT_EQ(StringUtil::Split("1,0,", ",", false), Pieces({"1", "0", ""}));
    EXPECT_EQ(StringUtil::Split(",1", ",", false), Pieces({"", "1"}));
    EXPECT_EQ(StringUtil::Split("1,,2", ",", false), Pieces({"1", "", "2"}));
    EXPECT_EQ(StringUtil::Split(",", ",", false), Pieces({"", ""}));
    EXPECT_EQ(StringUtil::Split("", ",", false), Pieces({""}));
}

TEST(StringUtil, SplitDropsEmptyPiecesWhenAskedTo)
{
    EXPECT_EQ(StringUtil::Split(",1,,1,", ",", true), Pieces({"1", "1"}));
    EXPECT_EQ(StringUtil::Split("", ",", true), Pieces({}));
    EXPECT_EQ(StringUtil::Split(",,,", ",", true), Pieces({}));
}

TEST(StringUtil, SplitTakesASeparatorOfSeveralCharactersFromTheLeft)
{
    EXPECT_EQ(StringUtil::Split("a::b:c", "::", false), Pieces({"a", "b:c"}));
    EXPECT_EQ(StringUtil::Split("a:::b", "::", false), Pieces({"a", ":b"}));
}

TEST(StringUtil, SplitByNothingGivesTheWholeText)
{
    EXPECT_EQ(StringUtil::Split("a,b", "", false), Pieces({"a,b"}));
}

TEST(StringUtil, SplitTakesAMillionPieces)
{
    std::string text(999999, ',');
    EXPECT_EQ(StringUtil::Split(UTF8String(text), ",", false).Size(), 1000000U);
}

TEST(StringUtil, FromUnsignedlongPutsTheNumberIntoTheFormat)
{
    EXPECT_EQ(StringUtil::FromUnsignedlong(0, "%lu"), UTF8String("0"));
    EXPECT_EQ(StringUtil::FromUnsignedlong(42, nullptr), UTF8String("42"));
    EXPECT_EQ(StringUtil::FromUnsignedlong(ULONG_MAX, "%lu"), UTF8String(std::to_string(ULONG_MAX)));
    EXPECT_EQ(StringUtil::FromUnsignedlong(7, "<%lu,%lu>"), UTF8String("<7,%lu>"));
}

TEST(StringUtil, FromUnsignedlongReadsNoOtherDirective)
{
    EXPECT_EQ(StringUtil::FromUnsignedlong(7, "%s%n%d"), UTF8String("%s%n%d"));
    EXPECT_EQ(StringUtil::FromUnsignedlong(7, ""), UTF8String());
}

}  // namespace
