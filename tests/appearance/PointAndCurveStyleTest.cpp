// The attributes of a style by which points and curves are drawn: a truth table of their texts.

#include <gtest/gtest.h>

#include "tests/appearance/AppearanceScene.h"

namespace KVR::Test
{

namespace
{

using R = IRenderStyle;

// The names in the order of their numbers, which count from 0.
constexpr char const* kMarkers[] = {
    "Dot",    "X",       "Plus",         "Asterisk",       "Square",       "Triangle",
    "Circle", "Diamond", "FilledSquare", "FilledTriangle", "FilledCircle", "FilledDiamond"};
constexpr char const* kFonts[] = {"Continuous",
                                  "ISO_Dash",
                                  "ISO_DashSpace",
                                  "ISO_LongDashDot",
                                  "ISO_LongDashDoubleDot",
                                  "ISO_LongDashTripleDot",
                                  "ISO_Dot",
                                  "ISO_LongDashShortDash",
                                  "ISO_LongDashDoubleShortDash",
                                  "ISO_DashDot",
                                  "ISO_DoubleDashDot",
                                  "ISO_DashDoubleDot",
                                  "ISO_DoubleDashDoubleDot",
                                  "ISO_DashTripleDot",
                                  "ISO_DoubleDashTripleDot"};

std::string Attribute(char const* name, std::string const& text)
{
    return std::string(name) + "=\"" + text + "\"";
}

// What the style answers for that text of the attribute, as a number.
template <class Enum>
std::optional<int> Answer(char const* attribute, std::string const& text,
                          IsValueSpecifiedEnum (R::*getter)(Enum&) const)
{
    StyleScene scene("", Attribute(attribute, text));
    auto const answer = AnswerOf(scene.Style(), getter);
    return answer ? std::optional(static_cast<int>(*answer)) : std::nullopt;
}

TEST(PointStyle, EachMarkerTextHasItsNumber)
{
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(
            Answer("PointStyleMarkerType", std::string("kPointStyleMarkerType_") + kMarkers[i], &R::PointStyleMarker),
            i)
            << kMarkers[i];
}

TEST(CurveStyle, EachFontTextHasItsNumber)
{
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(Answer("CurveStyleFont", std::string("kCurveStyleFontType_") + kFonts[i], &R::CurveStyleFont), i)
            << kFonts[i];
}

TEST(CurveStyle, TheFillTextHasItsNumber)
{
    EXPECT_EQ(Answer("CurveStyleFillArea", "kCurveStyleFillType_Solid", &R::CurveStyleFillArea), 0);
}

TEST(PointAndCurveStyle, AnyOtherTextIsNotSpecified)
{
    for (char const* text : {"", "Dot", "kPointStyleMarkerType_dot", " kPointStyleMarkerType_Dot", "0",
                             "kCurveStyleFontType_Dot", "kCurveStyleFillType_Hollow"})
    {
        EXPECT_FALSE(Answer("PointStyleMarkerType", text, &R::PointStyleMarker)) << text;
        EXPECT_FALSE(Answer("CurveStyleFont", text, &R::CurveStyleFont)) << text;
        EXPECT_FALSE(Answer("CurveStyleFillArea", text, &R::CurveStyleFillArea)) << text;
    }
}

TEST(PointStyle, TheSizeIsReadWhateverTheMarker)
{
    StyleScene unknown("", R"(PointStyleMarkerType="Blob" PointStyleMarkerSize="2.5")");
    EXPECT_FALSE(AnswerOf(unknown.Style(), &R::PointStyleMarker));
    EXPECT_EQ(AnswerOf(unknown.Style(), &R::PointStyleMarkerSize), 2.5);
    StyleScene absent("", R"(PointStyleMarkerSize="3")");
    EXPECT_EQ(AnswerOf(absent.Style(), &R::PointStyleMarkerSize), 3.0);
}

TEST(CurveStyle, TheWidthIsReadWhateverTheFont)
{
    StyleScene scene("", R"(CurveStyleFont="Dotted" CurveStyleWidth="0.35")");
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::CurveStyleFont));
    EXPECT_EQ(AnswerOf(scene.Style(), &R::CurveStyleWidth), 0.35);
}

TEST(PointAndCurveStyle, TheyStandOnTheStyleItselfAlone)
{
    StyleScene scene(R"(<DiffuseColor PointStyleMarkerSize="1" CurveStyleWidth="1"
                         PointStyleMarkerType="kPointStyleMarkerType_X"/>)");
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::PointStyleMarkerSize));
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::CurveStyleWidth));
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::PointStyleMarker));
}

}  // namespace

}  // namespace KVR::Test
