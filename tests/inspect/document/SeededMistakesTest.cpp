// One mistake in names and values in turn, planted in every place of the example scenes where it can stand.

#include <gtest/gtest.h>

#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "tests/inspect/document/Seeds.h"

namespace KVR::Test
{

TEST_P(Seeds, AnAttributeThatNobodyReads)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.name == "BaseOccPath")
                return std::nullopt;
            std::size_t const at = tag.begin + 1 + tag.name.size();
            return Planted{Replaced(text, at, 0, " Zorgle=\"1\""), at + 1, {"K-0104"}};
        });
}

TEST_P(Seeds, AMisspeltAttribute)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            // Those that nobody reads there anyway, and those of XML.
            bool const isUnread = attribute.name.find(':') != std::string::npos || tag.name == "BaseOccPath" ||
                                  (tag.name == "UnitAndTolerance" && attribute.name != "LengthUnit");
            if (isUnread)
                return std::nullopt;
            Planted planted{Replaced(text, attribute.nameBegin, 1, OtherCase(attribute.name).substr(0, 1)),
                            attribute.nameBegin,
                            {"K-0105"}};
            planted.hasConsequences = IsOfConsequence(tag, attribute);
            // Without a blob nothing is read any more.
            if (tag.name == "CustomDataItem")
                planted.rules.insert("K-0101");
            planted.isRepaired = !planted.hasConsequences;
            return planted;
        });
}

TEST_P(Seeds, AnElementThatNobodyReads)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.isEmpty || tag.hasText || tag.endTag == tag.end || TakesAnyName(tag))
                return std::nullopt;
            return Planted{Replaced(text, tag.end, 0, "<Zorgle/>"), tag.end, {"K-0102"}};
        });
}

TEST_P(Seeds, AMisspeltElement)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            SceneTag around;
            around.name = tag.parent;
            around.parent = tag.grandparent;
            // The paths of an override, and the view data of a file, are read in any case.
            if (tag.parent.empty() || TakesAnyName(around) || tag.name == "BaseOccPaths" ||
                (tag.name == "ViewData" && tag.parent == "FileProperties"))
                return std::nullopt;
            std::string const name = OtherCase(tag.name);
            std::string planted = Replaced(text, tag.begin + 1, name.size(), name);
            if (!tag.isEmpty)
                planted.replace(tag.endTag + 2, name.size(), name);
            if (tag.parent == "FileProperties")
                return Planted{planted, tag.begin, {"K-0116"}, false, true};
            // Some match in any case, and then read nothing.
            return Planted{planted, tag.begin, {"K-0103", "K-0106"}, true};
        });
}

TEST_P(Seeds, ABooleanThatLooksOtherwise)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.name, ".*Visib.*|Is[A-Z].*|Generate.*") ||
                !Matches(attribute.value, "0|1|True|true|False|false") || attribute.name == "IsSingleSided")
                return std::nullopt;
            Planted planted = WithValue(text, attribute, "yes", "K-0201");
            planted.hasConsequences = IsOfConsequence(tag, attribute);
            return planted;
        });
}

TEST_P(Seeds, AUnitThatIsNone)
{
    PlantInValues(
        [](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.value, "kUnitType_.*"))
                return std::nullopt;
            return WithValue(text, attribute, "Parsec", "K-0202");
        });
    PlantInTexts("MassUnit|TimeUnit", "Parsec", "K-0202");
}

TEST_P(Seeds, ATextThatNamesNoValue)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.value, "k[A-Za-z]*_.*") || Matches(attribute.value, "kUnitType_.*"))
                return std::nullopt;
            Planted planted = WithValue(text, attribute, "Zorgle", "K-0203");
            planted.hasConsequences = tag.name == "ISketch";
            return planted;
        });
}

TEST_P(Seeds, ANumberWithSomethingBehindIt)
{
    PlantInValues(
        [](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.name, "X|Y|Z|Fraction.*|.*Factor|Shininess|Transparency"))
                return std::nullopt;
            return WithValue(text, attribute, attribute.value + "mm", "K-0204");
        });
}

TEST_P(Seeds, ADecimalComma)
{
    PlantInValues(
        [](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.name, "X|Y|Z|Fraction.*|.*Factor") || !Matches(attribute.value, "-?\\d+\\.\\d+"))
                return std::nullopt;
            Planted planted =
                WithValue(text, attribute, std::regex_replace(attribute.value, std::regex("\\."), ","), "K-0205");
            planted.isRepaired = true;
            return planted;
        });
}

TEST_P(Seeds, TransformsThatAreNoneOrOdd)
{
    struct Odd
    {
        char const* numbers;
        char const* rule;
    };
    for (Odd const& odd :
         {Odd{"1 0 0 0 0 1 0 0 0 0 1 0 0 0 0", "K-0206"}, Odd{"1 0 0 0 0 0 0 0 0 0 1 0 0 0 0 1", "K-0207"},
          Odd{"1 0 0 0 0 -1 0 0 0 0 1 0 0 0 0 1", "K-0208"}, Odd{"1 0.5 0 0 0 1 0 0 0 0 1 0 0 0 0 1", "K-0209"}})
    {
        PlantInTexts("Transform", odd.numbers, odd.rule);
        PlantInValues(
            [&](std::string const& text, SceneTag const&, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (attribute.name != "Transformation")
                    return std::nullopt;
                return WithValue(text, attribute, odd.numbers, odd.rule);
            });
    }
}

TEST_P(Seeds, VectorsThatAreNone)
{
    for (char const* const vector : {"0 0 1", "0,1", "0,0,1,0", "0,zorgle,1", "0,0,1mm"})
        PlantInTexts("UpVector|FrontVector", vector, "K-0210");
}

TEST_P(Seeds, TimesThatAreNone)
{
    for (char const* const time : {"yesterday", "1 March 2024", "2024-13-01T00:00:00", "2024-02-30", "12:30:00"})
    {
        PlantInTexts("CreationDate", time, "K-0211");
        PlantInValues(
            [&](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
            {
                bool const isTime = attribute.name == "LastModificationTime" ||
                                    (tag.name == "CustomProperty" && attribute.name == "Value" &&
                                     text.substr(tag.begin, tag.end - tag.begin).find("kTime") != std::string::npos);
                if (!isTime)
                    return std::nullopt;
                return WithValue(text, attribute, time, "K-0211");
            });
    }
}

TEST_P(Seeds, AnEntryOfTheFilePropertiesThatNobodyCanAskFor)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.parent != "FileProperties" || tag.isEmpty)
                return std::nullopt;
            // Two letters in each other's place.
            std::string name = tag.name;
            std::swap(name[1], name[2]);
            std::string planted = Replaced(text, tag.endTag + 2, name.size(), name);
            return Planted{Replaced(planted, tag.begin + 1, name.size(), name), tag.begin, {"K-0116"}};
        });
}

TEST_P(Seeds, AnEntryOfTheFilePropertiesThatComesTwice)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.parent != "FileProperties" || Matches(tag.name, "ViewData|CustomProperties"))
                return std::nullopt;
            std::string const element = text.substr(tag.begin, tag.elementEnd - tag.begin);
            return Planted{Replaced(text, tag.elementEnd, 0, element), tag.elementEnd, {"K-0106"}};
        });
}

TEST_P(Seeds, AReferenceToNothing)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (attribute.name != "ID" || !Matches(tag.name, "Child|StyleRef|CameraRef"))
                return std::nullopt;
            Planted planted = WithValue(text, attribute, "nowhere", "K-0110");
            // What was referred to, and what stands behind an instance without a target.
            planted.hasConsequences = true;
            return planted;
        });
}

TEST_P(Seeds, AnOccurrencePathToNothing)
{
    for (char const* const path : {"[nowhere]", "nowhere"})
    {
        PlantInValues(
            [&](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
            {
                if (!Matches(attribute.name, "Path|OccurrencePath") || !attribute.value.starts_with('['))
                    return std::nullopt;
                Planted planted = WithValue(text, attribute, path, "K-0110");
                // With an empty path some of it is passed over.
                planted.hasConsequences = tag.name == "EntityStyles";
                return planted;
            });
    }
}

TEST_P(Seeds, AnElementUnderTheRootOfAnIdThatAnotherOneHas)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            bool const isObject = tag.parent == "Scene" && Matches(tag.name, "I[A-Z].*") && tag.name != "IUniverse";
            if (!isObject)
                return std::nullopt;
            std::string const element = text.substr(tag.begin, tag.elementEnd - tag.begin);
            // Of several files one alone is asked what kind its children are of.
            bool const isFile = tag.name == "IFile";
            return Planted{Replaced(text, tag.begin, 0, element), tag.begin, {"K-0109"}, isFile};
        });
}

TEST_P(Seeds, AnObjectThatNothingLeadsTo)
{
    PlantInTags(
        [](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (tag.parent != "Scene")
                return std::nullopt;
            return Planted{Replaced(text, tag.begin, 0, "<IPart ID=\"lonely\" Label=\"\"/>"), tag.begin, {"K-0114"}};
        });
}

INSTANTIATE_TEST_SUITE_P(Examples, Seeds, kSeedScenes, NameOfSeedScene);

}  // namespace KVR::Test
