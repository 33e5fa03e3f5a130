// The texts of a style's enumerators, as a scene writes them, with the numbers that a host gets.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/xml_util/EnumTexts.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using Row = std::pair<char const*, int>;

constexpr Row kPointMarkers[] = {
    {"kPointStyleMarkerType_Dot", 0},           {"kPointStyleMarkerType_X", 1},
    {"kPointStyleMarkerType_Plus", 2},          {"kPointStyleMarkerType_Asterisk", 3},
    {"kPointStyleMarkerType_Square", 4},        {"kPointStyleMarkerType_Triangle", 5},
    {"kPointStyleMarkerType_Circle", 6},        {"kPointStyleMarkerType_Diamond", 7},
    {"kPointStyleMarkerType_FilledSquare", 8},  {"kPointStyleMarkerType_FilledTriangle", 9},
    {"kPointStyleMarkerType_FilledCircle", 10}, {"kPointStyleMarkerType_FilledDiamond", 11},
};

constexpr Row kCurveFonts[] = {
    {"kCurveStyleFontType_Continuous", 0},
    {"kCurveStyleFontType_ISO_Dash", 1},
    {"kCurveStyleFontType_ISO_DashSpace", 2},
    {"kCurveStyleFontType_ISO_LongDashDot", 3},
    {"kCurveStyleFontType_ISO_LongDashDoubleDot", 4},
    {"kCurveStyleFontType_ISO_LongDashTripleDot", 5},
    {"kCurveStyleFontType_ISO_Dot", 6},
    {"kCurveStyleFontType_ISO_LongDashShortDash", 7},
    {"kCurveStyleFontType_ISO_LongDashDoubleShortDash", 8},
    {"kCurveStyleFontType_ISO_DashDot", 9},
    {"kCurveStyleFontType_ISO_DoubleDashDot", 10},
    {"kCurveStyleFontType_ISO_DashDoubleDot", 11},
    {"kCurveStyleFontType_ISO_DoubleDashDoubleDot", 12},
    {"kCurveStyleFontType_ISO_DashTripleDot", 13},
    {"kCurveStyleFontType_ISO_DoubleDashTripleDot", 14},
};

constexpr Row kCurveFills[] = {{"kCurveStyleFillType_Solid", 0}};

// The texts that are no keys of any table.
std::vector<std::string> NoKeys(char const* aKey)
{
    std::string const key = aKey;
    std::string lower = key;
    lower[0] = 'K';
    return {"", "0", key + " ", " " + key, key.substr(0, key.size() - 1), key + "x", lower, "Solid"};
}

template <class Enum, std::size_t kSize, class Rows>
void ExpectTable(Rows const& rows, EnumText<Enum> const (&table)[kSize])
{
    auto const find = [&](UTF16String const& text, Enum& value) { return ValueOfText(table, text.View(), value); };
    for (auto const& [text, value] : rows)
    {
        // Another value first, so that the right one must be written.
        auto found = static_cast<Enum>(value == 0 ? 1 : 0);
        EXPECT_TRUE(find(Wide(text), found)) << text;
        EXPECT_EQ(static_cast<int>(found), value) << text;
    }
    for (std::string const& text : NoKeys(rows[0].first))
    {
        // The largest number that every one of these types can hold.
        auto found = static_cast<Enum>(1);
        EXPECT_FALSE(find(Wide(text.c_str()), found)) << text;
        EXPECT_EQ(static_cast<int>(found), 1) << text << ": the output is left alone";
    }
}

}  // namespace

TEST(TextTables, PointMarkerTypes)
{
    ExpectTable(kPointMarkers, kPointStyleMarkerTypeTexts);
}

TEST(TextTables, CurveFontTypes)
{
    ExpectTable(kCurveFonts, kCurveStyleFontTypeTexts);
}

TEST(TextTables, CurveFillTypes)
{
    ExpectTable(kCurveFills, kCurveStyleFillTypeTexts);
}

TEST(TextTables, DoNotKnowEachOthersTexts)
{
    auto font = IRenderStyle::kCurveStyleFontType_ISO_Dot;
    auto fill = IRenderStyle::kCurveStyleFillType_Solid;
    auto marker = IRenderStyle::kPointStyleMarkerType_Circle;
    EXPECT_FALSE(ValueOfText(kCurveStyleFontTypeTexts, Wide("kCurveStyleFillType_Solid").View(), font));
    EXPECT_FALSE(ValueOfText(kCurveStyleFillTypeTexts, Wide("kCurveStyleFontType_Continuous").View(), fill));
    EXPECT_FALSE(ValueOfText(kPointStyleMarkerTypeTexts, Wide("kCurveStyleFontType_Continuous").View(), marker));
}

}  // namespace KVR::Test
