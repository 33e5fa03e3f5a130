#include "tests/inspect/document/Seeds.h"

#include <cstdlib>
#include <filesystem>
#include <regex>

#include "tests/inspect/document/CheckedText.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace fs = std::filesystem;

Planted WithValue(std::string const& text, TagAttribute const& attribute, std::string const& value,
                  std::string const& rule)
{
    return {Replaced(text, attribute.valueBegin, attribute.value.size(), value), attribute.valueBegin, {rule}};
}

bool TakesAnyName(SceneTag const& tag)
{
    static std::set<std::string> const kSets = {"GroupSet", "CameraSet", "ViewSet", "RefFiles"};
    return kSets.contains(tag.name) || (tag.name == "ChildSet" && tag.parent == "IFile");
}

bool IsOfConsequence(SceneTag const& tag, TagAttribute const& attribute)
{
    static std::regex const kNames(
        "ID|EntityId|Path|RefId|RefPath|Generate.*|IsRoot|Type|SketchTypeEnum|Items|"
        "Key|BlobBufferSize|FractionRed|FractionGreen|FractionBlue|.*Id|LODID");
    return std::regex_match(attribute.name, kNames) || tag.name == "BaseOccPath";
}

Seeds::Seeds()
{
    fs::path const scene = fs::path(KVR_EXAMPLES_DIR) / GetParam();
    for (auto const& entry : fs::directory_iterator(scene.parent_path()))
        fs::copy(entry.path(), fs::path(m_folder.Path()) / entry.path().filename());
    m_path = m_folder.Path() + "/" + scene.filename().string();
    m_text = BytesOf(m_path);
    m_tags = TagsOf(m_text);
    m_before = Check();
}

Seeds::~Seeds() = default;

Seeds::Counts Seeds::Check()
{
    CheckOptions options;
    options.rules = DocumentRuleIds();
    m_findings = CheckScene(m_path, options).findings;
    Counts counts;
    for (Finding const& finding : m_findings)
        ++counts[std::string(finding.rule->id) + " " + finding.path + ": " + finding.found];
    return counts;
}

std::vector<Finding> Seeds::NewFindings()
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

void Seeds::Expect(Planted const& planted)
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

void Seeds::PlantInTags(Plant const& plant)
{
    std::vector<Sow> all;
    for (SceneTag const& tag : m_tags)
    {
        if (plant(m_text, tag))
            all.emplace_back([this, &plant, &tag] { return *plant(m_text, tag); });
    }
    ExpectSome(all);
}

void Seeds::PlantInValues(PlantValue const& plant)
{
    std::vector<Sow> all;
    for (SceneTag const& tag : m_tags)
    {
        for (TagAttribute const& attribute : tag.attributes)
        {
            if (plant(m_text, tag, attribute))
                all.emplace_back([this, &plant, &tag, &attribute] { return *plant(m_text, tag, attribute); });
        }
    }
    ExpectSome(all);
}

void Seeds::PlantInTexts(char const* names, std::string const& other, std::string const& rule)
{
    PlantInTags(
        [&](std::string const& text, SceneTag const& tag) -> std::optional<Planted>
        {
            if (!Matches(tag.name, names))
                return std::nullopt;
            return Planted{Replaced(text, tag.end, tag.endTag - tag.end, other), tag.end, {rule}};
        });
}

void Seeds::ExpectSome(std::vector<Sow> const& all)
{
    // Some of the places; all of them on demand, which takes minutes.
    std::size_t const budget = kIsSanitized ? 5 : 30;
    std::size_t const step = std::getenv("KVR_SEED_ALL") ? 1 : all.size() / budget + 1;
    for (std::size_t i = 0; i < all.size(); i += step)
        Expect(all[i]());
    m_places += all.size();
    RecordProperty("planted", static_cast<int>(m_count));
    RecordProperty("places", static_cast<int>(m_places));
}

std::string NameOfSeedScene(::testing::TestParamInfo<char const*> const& scene)
{
    return std::regex_replace(fs::path(scene.param).stem().string(), std::regex("[^A-Za-z0-9]"), "_");
}

}  // namespace KVR::Test
