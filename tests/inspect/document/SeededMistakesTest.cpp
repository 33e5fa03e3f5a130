// One mistake of each rule in turn, planted in every place of the example scenes where it can stand: it is found, at
// its line, and nothing else is.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>

#include "tests/inspect/document/CheckedText.h"
#include "tests/inspect/document/SceneTags.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;

// A text with a mistake in it.
struct Planted
{
    std::string text;
    /// Of the mistake.
    std::size_t at = 0;
    /// Rules of which one finds it.
    std::set<std::string> rules;
    /// Whether more is lost because of it, which is found as well.
    bool hasConsequences = false;
    /// Whether it has a repair that leads back to the untouched text.
    bool isRepaired = false;
};

using Plant = std::function<std::optional<Planted>(std::string const& text, SceneTag const& tag)>;
using PlantValue =
    std::function<std::optional<Planted>(std::string const& text, SceneTag const& tag, TagAttribute const& attribute)>;

std::optional<Planted> WithValue(std::string const& text, TagAttribute const& attribute, std::string const& value,
                                 std::string const& rule)
{
    return Planted{Replaced(text, attribute.valueBegin, attribute.value.size(), value), attribute.valueBegin, {rule}};
}

// Every element there is an object or an entry, whatever its name.
bool TakesAnyName(SceneTag const& tag)
{
    static std::set<std::string> const kSets = {"GroupSet", "CameraSet", "ViewSet", "FileProperties", "RefFiles"};
    return kSets.contains(tag.name) || (tag.name == "ChildSet" && tag.parent == "IFile");
}

// Attributes by which objects are found, or which decide how much is read.
bool IsOfConsequence(SceneTag const& tag, TagAttribute const& attribute)
{
    static std::regex const kNames(
        "ID|EntityId|Path|RefId|RefPath|Generate.*|IsRoot|Type|SketchTypeEnum|Items|"
        "Key|BlobBufferSize|FractionRed|FractionGreen|FractionBlue|.*Id|LODID");
    return std::regex_match(attribute.name, kNames) || tag.name == "BaseOccPath";
}

class Seeds : public ::testing::TestWithParam<char const*>
{
protected:
    Seeds()
    {
        fs::path const scene = fs::path(KVR_EXAMPLES_DIR) / GetParam();
        for (auto const& entry : fs::directory_iterator(scene.parent_path()))
            fs::copy(entry.path(), fs::path(m_folder.Path()) / entry.path().filename());
        m_path = m_folder.Path() + "/" + scene.filename().string();
        m_text = BytesOf(m_path);
        m_tags = TagsOf(m_text);
        m_before = Check();
    }

    using Counts = std::map<std::string, int>;

    Counts Check()
    {
        CheckOptions options;
        options.rules = DocumentRuleIds();
        m_findings = CheckScene(m_path, options).findings;
        Counts counts;
        for (Finding const& finding : m_findings)
            ++counts[std::string(finding.rule->id) + " " + finding.path + ": " + finding.found];
        return counts;
    }

    // What there is now and was not before.
    std::vector<Finding> NewFindings()
    {
        WriteBytes(m_path, m_planted);
        Counts before = m_before;
        Check();
        std::vector<Finding> fresh;
        for (Finding const& finding : m_findings)
        {
            if (--before[std::string(finding.rule->id) + " " + finding.path + ": " + finding.found] < 0)
                fresh.push_back(finding);
        }
        return fresh;
    }

    void Expect(Planted const& planted)
    {
        m_planted = planted.text;
        std::vector<Finding> const fresh = NewFindings();
        std::size_t const line = LineOf(planted.text, planted.at);
        std::string const where = "line " + std::to_string(line) + ": " + planted.text.substr(planted.at, 60) +
                                  ::testing::PrintToString(planted.rules);
        std::vector<std::string> texts;
        bool isFound = false;
        for (Finding const& finding : fresh)
        {
            texts.push_back(BriefText(finding));
            bool const isIt = planted.rules.contains(std::string(finding.rule->id)) && finding.line == line;
            isFound = isFound || isIt;
            if (isIt && planted.isRepaired)
            {
                EXPECT_EQ(finding.fix.empty() ? std::string() : Repaired(planted.text, finding), m_text) << where;
            }
        }
        EXPECT_TRUE(isFound) << where << " among " << ::testing::PrintToString(texts);
        if (!planted.hasConsequences)
        {
            EXPECT_EQ(fresh.size(), 1U) << where << ": " << ::testing::PrintToString(texts);
        }
        ++m_count;
    }

    void PlantInTags(Plant const& plant)
    {
        std::vector<Planted> all;
        for (SceneTag const& tag : m_tags)
        {
            if (std::optional<Planted> const planted = plant(m_text, tag))
                all.push_back(*planted);
        }
        ExpectSome(all);
    }

    void PlantInValues(PlantValue const& plant)
    {
        std::vector<Planted> all;
        for (SceneTag const& tag : m_tags)
        {
            for (TagAttribute const& attribute : tag.attributes)
            {
                if (std::optional<Planted> const planted = plant(m_text, tag, attribute))
                    all.push_back(*planted);
            }
        }
        ExpectSome(all);
    }

    void ExpectSome(std::vector<Planted> const& all)
    {
        // Some of the places; all of them on demand, which takes minutes.
        std::size_t const budget = kIsSanitized ? 5 : 30;
        std::size_t const step = std::getenv("KVR_SEED_ALL") ? 1 : all.size() / budget + 1;
        for (std::size_t i = 0; i < all.size(); i += step)
            Expect(all[i]);
        RecordProperty("planted", static_cast<int>(m_count));
        RecordProperty("places", static_cast<int>(all.size()));
    }

    TempFolder m_folder;
    std::string m_path;
    std::string m_text;
    std::string m_planted;
    std::vector<SceneTag> m_tags;
    std::vector<Finding> m_findings;
    Counts m_before;
    std::size_t m_count = 0;
};

}  // namespace

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
            // The paths of an override are read in any case.
            if (tag.parent.empty() || TakesAnyName(around) || tag.name == "BaseOccPaths")
                return std::nullopt;
            std::string const name = OtherCase(tag.name);
            std::string planted = Replaced(text, tag.begin + 1, name.size(), name);
            if (!tag.isEmpty)
                planted.replace(tag.endTag + 2, name.size(), name);
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
            std::optional<Planted> planted = WithValue(text, attribute, "yes", "K-0201");
            planted->hasConsequences = IsOfConsequence(tag, attribute);
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
}

TEST_P(Seeds, ATextThatNamesNoValue)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (!Matches(attribute.value, "k[A-Za-z]*_.*") || Matches(attribute.value, "kUnitType_.*"))
                return std::nullopt;
            std::optional<Planted> planted = WithValue(text, attribute, "Zorgle", "K-0203");
            planted->hasConsequences = tag.name == "ISketch";
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
            std::optional<Planted> planted =
                WithValue(text, attribute, std::regex_replace(attribute.value, std::regex("\\."), ","), "K-0205");
            planted->isRepaired = true;
            return planted;
        });
}

namespace
{

// Each transform by another one, in attributes and in the text of elements.
std::vector<Planted> WithTransform(std::string const& text, std::vector<SceneTag> const& tags,
                                   std::string const& numbers, std::string const& rule)
{
    std::vector<Planted> all;
    for (SceneTag const& tag : tags)
    {
        if (tag.name == "Transform")
            all.push_back({Replaced(text, tag.end, tag.endTag - tag.end, numbers), tag.end, {rule}});
        for (TagAttribute const& attribute : tag.attributes)
        {
            if (attribute.name == "Transformation")
                all.push_back(*WithValue(text, attribute, numbers, rule));
        }
    }
    return all;
}

}  // namespace

TEST_P(Seeds, TransformsThatAreNoneOrOdd)
{
    ExpectSome(WithTransform(m_text, m_tags, "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0", "K-0206"));
    ExpectSome(WithTransform(m_text, m_tags, "1 0 0 0 0 0 0 0 0 0 1 0 0 0 0 1", "K-0207"));
    ExpectSome(WithTransform(m_text, m_tags, "1 0 0 0 0 -1 0 0 0 0 1 0 0 0 0 1", "K-0208"));
    ExpectSome(WithTransform(m_text, m_tags, "1 0.5 0 0 0 1 0 0 0 0 1 0 0 0 0 1", "K-0209"));
}

TEST_P(Seeds, AReferenceToNothing)
{
    PlantInValues(
        [](std::string const& text, SceneTag const& tag, TagAttribute const& attribute) -> std::optional<Planted>
        {
            if (attribute.name != "ID" || !Matches(tag.name, "Child|StyleRef|CameraRef"))
                return std::nullopt;
            std::optional<Planted> planted = WithValue(text, attribute, "nowhere", "K-0110");
            // What was referred to, and what stands behind an instance without a target.
            planted->hasConsequences = true;
            return planted;
        });
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

INSTANTIATE_TEST_SUITE_P(Examples, Seeds,
                         ::testing::Values("complete/complete.xml", "as1-oc-214/as1-oc-214.xml",
                                           "lcr_follower_arm/lcr_follower_arm.xml"),
                         [](auto const& seeds)
                         {
                             std::string const name = fs::path(seeds.param).stem().string();
                             return std::regex_replace(name, std::regex("[^A-Za-z0-9]"), "_");
                         });

}  // namespace KVR::Test
