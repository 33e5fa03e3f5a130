// Units of assemblies and parts, in the order and number in which a scene may state them.

#include <gtest/gtest.h>

#include "framework/xml_util/XMLStrUtil.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

constexpr UnitAnswers kNoUnits = {kUnitType_Unknown, kUnitType_Unknown, kUnitType_Unknown};

UnitAnswers Read(std::string const& element, std::string const& content)
{
    TestScene scene(InScene("<" + element + " ID='c'>" + content + "</" + element + ">"));
    scene.Begin();
    return UnitsOf(scene.Get<IComponent>("c"));
}

// The elements that may state units, each the second time with other units.
enum Element
{
    kElement_Unit,
    kElement_Older,
    kElement_OlderInLowerCase,
    kElement_Count
};

struct Told
{
    char const* length;
    UnitTypeEnum lengthUnit;
};

constexpr Told kTold[] = {
    {"kUnitType_Millimeter", kUnitType_Millimeter},
    {"kUnitType_Inch", kUnitType_Inch},
    {"kUnitType_Mile", kUnitType_Mile},
};

std::string TextFor(Element element, std::size_t place)
{
    std::string const length = std::string(" LengthUnit='") + kTold[place].length + "'";
    switch (element)
    {
        case kElement_Unit:
            return "<Unit" + length + " DisplayAngleUnit='kUnitType_Degree' DisplayLengthUnit='kUnitType_Yard'/>";
        case kElement_Older:
            return "<UnitAndTolerance" + length + " LinearTolerance='0.5'/>";
        default:
            return "<unitandtolerance" + length + "/>";
    }
}

// What becomes of a sequence of elements: the last "Unit" counts, and without one the first of the older form. An
// assembly takes that one in any case, although in another case it says nothing.
UnitAnswers Expected(bool isAssembly, std::vector<Element> const& elements)
{
    UnitAnswers units = kNoUnits;
    bool hasUnit = false;
    for (std::size_t i = 0; i < elements.size(); ++i)
    {
        if (elements[i] != kElement_Unit)
            continue;
        hasUnit = true;
        units = {kTold[i].lengthUnit, kUnitType_Degree, kUnitType_Yard};
    }
    for (std::size_t i = 0; i < elements.size() && !hasUnit; ++i)
    {
        if (elements[i] == kElement_OlderInLowerCase && !isAssembly)
            continue;
        if (elements[i] == kElement_Older)
            units = {kTold[i].lengthUnit, kUnitType_Unknown, kTold[i].lengthUnit};
        break;
    }
    return units;
}

}  // namespace

TEST(ComponentUnits, EverySequenceOfUpToThreeElementsGivesTheUnitsOfTheOneThatCounts)
{
    std::vector<std::vector<Element>> sequences{{}};
    for (std::size_t first = 0; first < sequences.size(); ++first)
    {
        if (sequences[first].size() == std::size(kTold))
            continue;
        for (int element = 0; element < kElement_Count; ++element)
        {
            sequences.push_back(sequences[first]);
            sequences.back().push_back(static_cast<Element>(element));
        }
    }
    ASSERT_EQ(sequences.size(), 1u + 3u + 9u + 27u);
    for (std::vector<Element> const& sequence : sequences)
    {
        std::string content;
        for (std::size_t i = 0; i < sequence.size(); ++i)
            content += TextFor(sequence[i], i);
        EXPECT_EQ(Read("IAssembly", content), Expected(true, sequence)) << content;
        EXPECT_EQ(Read("IPart", content), Expected(false, sequence)) << content;
    }
}

TEST(ComponentUnits, AUnitElementGivesAllThree)
{
    for (char const* const element : {"IAssembly", "IPart"})
        EXPECT_EQ(Read(element,
                       "<Unit LengthUnit='kUnitType_Millimeter' DisplayAngleUnit='kUnitType_Gradian' "
                       "DisplayLengthUnit='kUnitType_Mil'/>"),
                  (UnitAnswers{kUnitType_Millimeter, kUnitType_Gradian, kUnitType_Mil}));
}

TEST(ComponentUnits, AUnitThatIsMissingOrNoneKeepsWhatAnEarlierElementSaid)
{
    std::string const first =
        "<Unit LengthUnit='kUnitType_Millimeter' DisplayAngleUnit='kUnitType_Gradian' "
        "DisplayLengthUnit='kUnitType_Mil'/>";
    for (char const* const element : {"IAssembly", "IPart"})
    {
        EXPECT_EQ(Read(element, first + "<Unit/>"),
                  (UnitAnswers{kUnitType_Millimeter, kUnitType_Gradian, kUnitType_Mil}));
        EXPECT_EQ(Read(element, first + "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='' "
                                        "DisplayLengthUnit='inch'/>"),
                  (UnitAnswers{kUnitType_Inch, kUnitType_Gradian, kUnitType_Mil}));
    }
}

TEST(ComponentUnits, AnEmptyUnitElementStillBeatsTheOlderForm)
{
    std::string const older = "<UnitAndTolerance LengthUnit='kUnitType_Inch'/>";
    for (char const* const element : {"IAssembly", "IPart"})
    {
        EXPECT_EQ(Read(element, older + "<Unit/>"), kNoUnits);
        EXPECT_EQ(Read(element, "<Unit/>" + older), kNoUnits);
    }
}

TEST(ComponentUnits, TheOlderFormGivesTheLengthUnitTwiceAndNoAngleUnit)
{
    for (char const* const element : {"IAssembly", "IPart"})
        EXPECT_EQ(Read(element,
                       "<UnitAndTolerance LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
                       "DisplayLengthUnit='kUnitType_Mile' AngularTolerance='1' LinearTolerance='x'/>"),
                  (UnitAnswers{kUnitType_Inch, kUnitType_Unknown, kUnitType_Inch}));
}

TEST(ComponentUnits, TheOlderFormInAnotherCaseTakesThePlaceOfAnExactOneInAnAssemblyOnly)
{
    std::string const content =
        "<UNITANDTOLERANCE LengthUnit='kUnitType_Inch'/><UnitAndTolerance LengthUnit='kUnitType_Mile'/>";
    EXPECT_EQ(Read("IAssembly", content), kNoUnits);
    EXPECT_EQ(Read("IPart", content), (UnitAnswers{kUnitType_Mile, kUnitType_Unknown, kUnitType_Mile}));
}

TEST(ComponentUnits, AUnitInAnotherCaseLeavesTheOlderForm)
{
    for (char const* const element : {"IAssembly", "IPart"})
        EXPECT_EQ(Read(element, "<unit LengthUnit='kUnitType_Inch'/><UnitAndTolerance LengthUnit='kUnitType_Mile'/>"),
                  (UnitAnswers{kUnitType_Mile, kUnitType_Unknown, kUnitType_Mile}));
}

TEST(ComponentUnits, TheUnitsMayStandBehindTheChildren)
{
    for (char const* const element : {"IAssembly", "IPart"})
        EXPECT_EQ(Read(element, "<UnitAndTolerance LengthUnit='kUnitType_Inch'/><ChildSet/><ChangeKey/><Styles/>"),
                  (UnitAnswers{kUnitType_Inch, kUnitType_Unknown, kUnitType_Inch}));
}

TEST(ComponentUnits, EveryUnitTextIsAnswered)
{
    for (UnitTypeEnum const unit : {kUnitType_Micrometer, kUnitType_Millimeter, kUnitType_Centimeter,
                                    kUnitType_Decimeter, kUnitType_Meter, kUnitType_Kilometer, kUnitType_Microinch,
                                    kUnitType_Mil, kUnitType_Inch, kUnitType_Foot, kUnitType_Yard, kUnitType_Mile})
    {
        std::string const text = XMLStrUtil::UnitTypeToString(unit);
        EXPECT_EQ(Read("IPart", "<Unit LengthUnit='" + text + "' DisplayLengthUnit='" + text + "'/>"),
                  (UnitAnswers{unit, kUnitType_Unknown, unit}))
            << text;
    }
}

}  // namespace KVR::Test
