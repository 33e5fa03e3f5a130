#include "annotation/XMLText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

// The text of a callout, from the content of its element.
struct TextElement
{
    explicit TextElement(std::string const& children, std::string const& attributes = "")
        : scene(InScene("<IAnnotationCallout ID='a'><IText " + attributes + ">" + children +
                        "</IText></IAnnotationCallout>")),
          text(*scene.Begin().Get<IAnnotationCallout>("a").Text())
    {
    }
    TestScene scene;
    IText& text;
};

struct FragmentElement
{
    explicit FragmentElement(std::string const& attributes, std::string const& children = "")
        : element("<ITextLine><ITextFragment " + attributes + ">" + children + "</ITextFragment></ITextLine>"),
          fragment(*element.text.LineAt(0)->FragmentAt(0))
    {
    }
    TextElement element;
    ITextFragment& fragment;
};

struct LineElement
{
    explicit LineElement(std::string const& attributes, std::string const& children = "")
        : element("<ITextLine " + attributes + ">" + children + "</ITextLine>"), line(*element.text.LineAt(0))
    {
    }
    TextElement element;
    ITextLine& line;
};

std::array<double, 3> OriginOf(IText const& text)
{
    Position origin(9, 9, 9);
    EXPECT_EQ(text.Origin(origin), kIsValueSpecified_Yes);
    return {origin.X(), origin.Y(), origin.Z()};
}

std::optional<std::array<double, 4>> ColorOf(ITextFragment const& fragment,
                                             IsValueSpecifiedEnum (ITextFragment::*getter)(Color&) const)
{
    auto const color = AnswerOf(fragment, getter);
    if (!color)
        return {};
    return std::array<double, 4>{color->Red(), color->Green(), color->Blue(), color->Alpha()};
}

// What TextJustification writes and what it answers.
std::pair<int, int> JustificationOf(std::string const& attributes)
{
    TextElement const test("", attributes);
    int value = -99;
    int const answer = test.text.TextJustification(value);
    return {value, answer};
}

}  // namespace

TEST(XMLText, WithoutAnythingItHasTheDefaults)
{
    TextElement const test("");
    EXPECT_EQ(OriginOf(test.text), (std::array<double, 3>{0, 0, 0}));
    EXPECT_EQ(test.text.LineCount(), 0U);
    EXPECT_EQ(AnswerOf(test.text, &IText::Transform).has_value(), false);
    EXPECT_EQ(AnswerOf(test.text, &IText::IsVertical), std::nullopt);
    EXPECT_EQ(AnswerOf(test.text, &IText::LengthUnit), std::nullopt);
    EXPECT_EQ(JustificationOf(""), std::pair(1, 1));
}

TEST(XMLText, EachOriginStartsFromZero)
{
    EXPECT_EQ(OriginOf(TextElement("<Origin X='1' Y='2' Z='3'/>").text), (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(OriginOf(TextElement("<Origin X='1' Y='2' Z='3'/><Origin Y='5'/>").text),
              (std::array<double, 3>{0, 5, 0}));
    EXPECT_EQ(OriginOf(TextElement("<Origin X='1' Z='3'/>").text), (std::array<double, 3>{1, 0, 3}));
}

TEST(XMLText, ATransformIsSpecifiedAlsoWhenItIsTheIdentityOrNoTransform)
{
    auto const moved = AnswerOf(TextElement("<Transform>" + MoveText(2) + "</Transform>").text, &IText::Transform);
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->Element(0, 3), 2.0);
    for (std::string const& text : {MoveText(0), std::string("none"), std::string()})
    {
        auto const identity = AnswerOf(TextElement("<Transform>" + text + "</Transform>").text, &IText::Transform);
        ASSERT_TRUE(identity) << text;
        EXPECT_TRUE(identity->IsIdentity()) << text;
    }
}

TEST(XMLText, AFurtherTransformStartsFromTheIdentity)
{
    auto const second = AnswerOf(
        TextElement("<Transform>" + MoveText(2) + "</Transform><Transform>none</Transform>").text, &IText::Transform);
    ASSERT_TRUE(second);
    EXPECT_TRUE(second->IsIdentity());
}

TEST(XMLText, ItsVerticalFlagTakesOneAndNotTrue)
{
    EXPECT_EQ(AnswerOf(TextElement("", "IsVertical='1'").text, &IText::IsVertical), true);
    for (char const* const text : {"True", "true", "0", "", "01", " 1"})
        EXPECT_EQ(AnswerOf(TextElement("", std::string("IsVertical='") + text + "'").text, &IText::IsVertical), false)
            << text;
}

TEST(XMLText, ALengthUnitOfAnyTextIsSpecified)
{
    EXPECT_EQ(AnswerOf(TextElement("", "LengthUnit='kUnitType_Inch'").text, &IText::LengthUnit), kUnitType_Inch);
    EXPECT_EQ(AnswerOf(TextElement("", "LengthUnit='furlong'").text, &IText::LengthUnit), kUnitType_Unknown);
    EXPECT_EQ(AnswerOf(TextElement("", "LengthUnit=''").text, &IText::LengthUnit), kUnitType_Unknown);
}

TEST(XMLText, ItsJustificationAnswersItsOwnValue)
{
    EXPECT_EQ(JustificationOf("TextJustification='0'"), std::pair(0, 0)) << "reads as not specified";
    EXPECT_EQ(JustificationOf("TextJustification='1'"), std::pair(1, 1));
    EXPECT_EQ(JustificationOf("TextJustification='2'"), std::pair(2, 2));
    EXPECT_EQ(JustificationOf("TextJustification='-7'"), std::pair(-7, -7));
    EXPECT_EQ(JustificationOf("TextJustification='2147483647'"), std::pair(2147483647, 2147483647));
}

TEST(XMLText, AJustificationThatIsNoIntegerLeavesOne)
{
    for (char const* const text : {"left", "", "1.5", "0x2", "2147483648"})
        EXPECT_EQ(JustificationOf(std::string("TextJustification='") + text + "'"), std::pair(1, 1)) << text;
}

TEST(XMLText, LinesAndFragmentsKeepTheirOrder)
{
    TextElement const test(
        "<ITextLine><ITextFragment Value='a'/><ITextFragment Value='b'/></ITextLine><itextline/>"
        "<ITextLine/><Other/><ITextLine><ITextFragment Value='c'/><itextfragment/></ITextLine>");
    ASSERT_EQ(test.text.LineCount(), 3U);
    ASSERT_EQ(test.text.LineAt(0)->FragmentCount(), 2U);
    EXPECT_EQ(Text(test.text.LineAt(0)->FragmentAt(0)->Value()), "a");
    EXPECT_EQ(Text(test.text.LineAt(0)->FragmentAt(1)->Value()), "b");
    EXPECT_EQ(test.text.LineAt(1)->FragmentCount(), 0U) << "a line without fragments is kept";
    ASSERT_EQ(test.text.LineAt(2)->FragmentCount(), 1U);
    EXPECT_EQ(Text(test.text.LineAt(2)->FragmentAt(0)->Value()), "c");
}

TEST(XMLText, AnIndexBeyondTheEndIsOutOfRange)
{
    TextElement const test("<ITextLine><ITextFragment/></ITextLine>");
    EXPECT_THAT([&] { test.text.LineAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { test.text.LineAt(0)->FragmentAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { test.text.LineAt(~0ULL); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLTextLine, AlignmentAndIndentationAreSpecifiedWhenTheyConvert)
{
    LineElement const test("TextAlignment='3' Indentation='1.25'");
    EXPECT_EQ(AnswerOf(test.line, &ITextLine::TextAlignment), 3);
    EXPECT_EQ(AnswerOf(test.line, &ITextLine::Indentation), 1.25);
    for (char const* const attributes : {"", "TextAlignment='' Indentation=''", "TextAlignment='1.0' Indentation='x'"})
    {
        LineElement const bad(attributes);
        EXPECT_EQ(AnswerOf(bad.line, &ITextLine::TextAlignment), std::nullopt) << attributes;
        EXPECT_EQ(AnswerOf(bad.line, &ITextLine::Indentation), std::nullopt) << attributes;
    }
}

TEST(XMLTextFragment, ItsCharactersComeFromValueAlone)
{
    EXPECT_EQ(Text(FragmentElement("Value='R\xC3\xBC 5&lt;6'").fragment.Value()), "R\xC3\xBC 5<6");
    EXPECT_EQ(Text(FragmentElement("", "content").fragment.Value()), "");
}

TEST(XMLTextFragment, WithoutAnythingNothingIsSpecified)
{
    FragmentElement const test("");
    EXPECT_EQ(Text(test.fragment.Value()), "");
    EXPECT_EQ(ColorOf(test.fragment, &ITextFragment::TextColor), std::nullopt);
    EXPECT_EQ(ColorOf(test.fragment, &ITextFragment::TextBackgroundColor), std::nullopt);
    EXPECT_EQ(TextOf(test.fragment, &ITextFragment::FontName), std::nullopt);
    for (auto const getter :
         {&ITextFragment::IsBold, &ITextFragment::IsItalic, &ITextFragment::IsUnderlined, &ITextFragment::IsOverlined})
        EXPECT_EQ(AnswerOf(test.fragment, getter), std::nullopt);
    for (auto const getter :
         {&ITextFragment::Height, &ITextFragment::Width, &ITextFragment::FontSize, &ITextFragment::Gap})
        EXPECT_EQ(AnswerOf(test.fragment, getter), std::nullopt);
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::ScriptType), std::nullopt);
}

TEST(XMLTextFragment, AFontNameIsSpecifiedAlsoWhenItIsEmpty)
{
    EXPECT_EQ(TextOf(FragmentElement("FontName='Arial'").fragment, &ITextFragment::FontName), "Arial");
    EXPECT_EQ(TextOf(FragmentElement("FontName=''").fragment, &ITextFragment::FontName), "");
}

TEST(XMLTextFragment, NumbersAreSpecifiedWhenTheyConvert)
{
    FragmentElement const test("Height='1' Width='2.5' FontSize='-3' Gap='4e1' ScriptType='-2'");
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::Height), 1.0);
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::Width), 2.5);
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::FontSize), -3.0);
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::Gap), 40.0);
    EXPECT_EQ(AnswerOf(test.fragment, &ITextFragment::ScriptType), -2);
    FragmentElement const bad("Height='abc' Width='' FontSize='1,5' Gap='1 mm' ScriptType='1.5'");
    for (auto const getter :
         {&ITextFragment::Height, &ITextFragment::Width, &ITextFragment::FontSize, &ITextFragment::Gap})
        EXPECT_EQ(AnswerOf(bad.fragment, getter), std::nullopt);
    EXPECT_EQ(AnswerOf(bad.fragment, &ITextFragment::ScriptType), std::nullopt);
}

TEST(XMLTextFragment, ColoursAreRead)
{
    FragmentElement const test(
        "",
        "<TextColor FractionRed='0.1' FractionGreen='0.2' FractionBlue='0.3' FractionAlpha='0.4'/>"
        "<TextBackgroundColor FractionRed='1' FractionGreen='0' FractionBlue='0' FractionAlpha='1'/>");
    EXPECT_EQ(ColorOf(test.fragment, &ITextFragment::TextColor), (std::array<double, 4>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(ColorOf(test.fragment, &ITextFragment::TextBackgroundColor), (std::array<double, 4>{1, 0, 0, 1}));
}

TEST(XMLTextFragment, AnIncompleteColourIsSpecifiedAsANewColor)
{
    Color const none;
    std::array<double, 4> const untouched = {none.Red(), none.Green(), none.Blue(), none.Alpha()};
    std::string const red = "<TextColor FractionRed='1' FractionGreen='1' FractionBlue='1' FractionAlpha='1'/>";
    EXPECT_EQ(ColorOf(FragmentElement("", "<TextColor FractionRed='0.5'/>").fragment, &ITextFragment::TextColor),
              untouched);
    EXPECT_EQ(ColorOf(FragmentElement("", red + "<TextColor/>").fragment, &ITextFragment::TextColor), untouched)
        << "each element starts anew";
}

// Flag by text: every flag of a fragment takes "True" alone.
struct Flag
{
    char const* name;
    IsValueSpecifiedEnum (ITextFragment::*getter)(bool&) const;
};

class TextFlag : public testing::TestWithParam<Flag>
{
};

TEST_P(TextFlag, IsTrueForTheWordTrueAloneAndSpecifiedForAnyText)
{
    for (char const* const text : {"True", "1", "true", "TRUE", "", "False", " True"})
    {
        FragmentElement const test(std::string(GetParam().name) + "='" + text + "'");
        EXPECT_EQ(AnswerOf(test.fragment, GetParam().getter), std::string(text) == "True") << text;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, TextFlag,
                         testing::Values(Flag{"IsBold", &ITextFragment::IsBold},
                                         Flag{"IsItalic", &ITextFragment::IsItalic},
                                         Flag{"IsUnderlined", &ITextFragment::IsUnderlined},
                                         Flag{"IsOverlined", &ITextFragment::IsOverlined}),
                         [](auto const& test) { return std::string(test.param.name); });

TEST(XMLText, NullNodesFail)
{
    EXPECT_FALSE(XMLText().ReadFromXML(nullptr));
    EXPECT_FALSE(XMLTextLine().ReadFromXML(nullptr));
    EXPECT_FALSE(XMLTextFragment().ReadFromXML(nullptr));
}

}  // namespace KVR::Test
