#include "readers/ColorReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using Fractions = std::vector<double>;

Fractions Of(Color const& color)
{
    return {color.Red(), color.Green(), color.Blue(), color.Alpha()};
}

Color Before()
{
    Color color;
    color.SetFractionalRGBA(0.9, 0.8, 0.7, 0.6);
    return color;
}

Fractions Read(std::string const& attributes)
{
    ParsedDocument const document("<Color " + attributes + "/>");
    Color color = Before();
    ReadColor(document.Root(), color);
    return Of(color);
}

constexpr char const* kRgb = R"(FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3")";
std::string With(std::string const& more)
{
    return std::string(kRgb) + ' ' + more;
}

// What a style does with a colour and its factor.
class FakeStyle
{
public:
    void SetDiffuse(Color const& color) { diffuse.push_back(Of(color)); }
    void SetDiffuseFactor(double const& factor) { factors.push_back(factor); }

    std::vector<Fractions> diffuse;
    std::vector<double> factors;
};

bool ReadInto(FakeStyle& style, std::string const& attributes, bool withFactor = true)
{
    ParsedDocument const document("<Diffuse " + attributes + "/>");
    return ReadColorFactor(document.Root(), style, &FakeStyle::SetDiffuse,
                           withFactor ? &FakeStyle::SetDiffuseFactor : nullptr);
}

}  // namespace

TEST(ReadColor, TakesFourFractionsWithoutClamping)
{
    EXPECT_EQ(Read(With(R"(FractionAlpha="0.4")")), (Fractions{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(Read(R"(FractionRed="-1" FractionGreen="2" FractionBlue="1e3" FractionAlpha="-0.5")"),
              (Fractions{-1.0, 2.0, 1000.0, -0.5}));
}

TEST(ReadColor, LeavesTheColorAloneWhenOneOfTheFourIsMissing)
{
    EXPECT_EQ(Read(kRgb), Of(Before())) << "red, green and blue are not enough";
    EXPECT_EQ(Read(R"(FractionGreen="1" FractionBlue="1" FractionAlpha="1")"), Of(Before()));
    EXPECT_EQ(Read(R"(FractionRed="1" FractionBlue="1" FractionAlpha="1")"), Of(Before()));
    EXPECT_EQ(Read(R"(FractionRed="1" FractionGreen="1" FractionAlpha="1")"), Of(Before()));
    EXPECT_EQ(Read(""), Of(Before()));
}

TEST(ReadColor, SetsNothingWhenOneOfTheFourIsNoNumber)
{
    EXPECT_EQ(Read(With(R"(FractionAlpha="opaque")")), Of(Before())) << "not even the other three";
    EXPECT_EQ(Read(With(R"(FractionAlpha="")")), Of(Before()));
    EXPECT_EQ(Read(R"(FractionRed="x" FractionGreen="1" FractionBlue="1" FractionAlpha="1")"), Of(Before()));
    EXPECT_EQ(Read(R"(FractionRed="1" FractionGreen="0,5" FractionBlue="1" FractionAlpha="1")"), Of(Before()));
    EXPECT_EQ(Read(R"(FractionRed="1" FractionGreen="1" FractionBlue="inf" FractionAlpha="1")"), Of(Before()));
}

TEST(ReadColor, IsNotMisledByANullNode)
{
    Color color = Before();
    ReadColor(nullptr, color);
    EXPECT_EQ(Of(color), Of(Before()));
}

TEST(ReadFractions, NeedsRedGreenAndBlueAndTakesAlphaWhenThere)
{
    auto const read = [](std::string const& attributes, Color& color)
    {
        ParsedDocument const document("<Color " + attributes + "/>");
        return ReadFractions(document.Root(), color);
    };
    Color color = Before();
    EXPECT_TRUE(read(With(R"(FractionAlpha="0.4")"), color));
    EXPECT_EQ(Of(color), (Fractions{0.1, 0.2, 0.3, 0.4}));
    EXPECT_TRUE(read(kRgb, color));
    EXPECT_EQ(Of(color), (Fractions{0.1, 0.2, 0.3, 1.0})) << "opaque without alpha";
    color = Before();
    EXPECT_FALSE(read(R"(FractionRed="1" FractionGreen="1" FractionAlpha="1")", color));
    EXPECT_FALSE(ReadFractions(nullptr, color));
    EXPECT_EQ(Of(color), Of(Before()));
}

TEST(ReadFractions, TakesATextThatIsNoNumberForZero)
{
    ParsedDocument const document(
        R"(<Color FractionRed="red" FractionGreen="" FractionBlue="0.5" FractionAlpha="no"/>)");
    Color color = Before();
    EXPECT_TRUE(ReadFractions(document.Root(), color));
    EXPECT_EQ(Of(color), (Fractions{0.0, 0.0, 0.5, 0.0}));
}

TEST(ReadColorFactor, AcceptsRedGreenAndBlueAsOpaque)
{
    FakeStyle style;
    EXPECT_TRUE(ReadInto(style, kRgb));
    ASSERT_EQ(style.diffuse.size(), 1U);
    EXPECT_EQ(style.diffuse[0], (Fractions{0.1, 0.2, 0.3, 1.0}));
    EXPECT_TRUE(style.factors.empty()) << "no factor was written";
}

TEST(ReadColorFactor, TakesAlphaAndFactorWhenTheyAreThere)
{
    FakeStyle style;
    EXPECT_TRUE(ReadInto(style, With(R"(FractionAlpha="0.4" ColorFactor="0.25")")));
    ASSERT_EQ(style.diffuse.size(), 1U);
    EXPECT_EQ(style.diffuse[0], (Fractions{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(style.factors, (std::vector<double>{0.25}));
}

TEST(ReadColorFactor, DoesNothingWithoutOneOfTheThree)
{
    FakeStyle style;
    EXPECT_FALSE(ReadInto(style, R"(FractionGreen="1" FractionBlue="1" FractionAlpha="1" ColorFactor="1")"));
    EXPECT_FALSE(ReadInto(style, R"(FractionRed="1" FractionBlue="1" FractionAlpha="1" ColorFactor="1")"));
    EXPECT_FALSE(ReadInto(style, R"(FractionRed="1" FractionGreen="1" FractionAlpha="1" ColorFactor="1")"));
    EXPECT_FALSE(ReadColorFactor<FakeStyle>(nullptr, style, &FakeStyle::SetDiffuse, &FakeStyle::SetDiffuseFactor));
    EXPECT_TRUE(style.diffuse.empty());
    EXPECT_TRUE(style.factors.empty());
}

TEST(ReadColorFactor, DoesNotLookAtTheFactorWithoutASetterForIt)
{
    FakeStyle style;
    EXPECT_TRUE(ReadInto(style, With(R"(ColorFactor="0.25")"), false));
    EXPECT_EQ(style.diffuse.size(), 1U);
    EXPECT_TRUE(style.factors.empty());
}

TEST(ReadColorFactor, TestsNoConversion)
{
    FakeStyle style;
    EXPECT_TRUE(ReadInto(style, R"(FractionRed="a" FractionGreen="b" FractionBlue="1" ColorFactor="c")"));
    EXPECT_EQ(style.diffuse.at(0), (Fractions{0.0, 0.0, 1.0, 1.0}));
    EXPECT_EQ(style.factors, (std::vector<double>{0.0})) << "a factor that is no number is set, as 0";
}

}  // namespace KVR::Test
