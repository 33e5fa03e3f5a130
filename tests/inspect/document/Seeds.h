#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "inspect/Check.h"
#include "tests/inspect/document/SceneTags.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A text with a mistake in it.
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

/// Answers a text with a mistake at that place, or nothing where none of the kind can stand.
using Plant = std::function<std::optional<Planted>(std::string const& text, SceneTag const& tag)>;
using PlantValue =
    std::function<std::optional<Planted>(std::string const& text, SceneTag const& tag, TagAttribute const& attribute)>;

/// The text with another value of an attribute, which the rule finds.
Planted WithValue(std::string const& text, TagAttribute const& attribute, std::string const& value,
                  std::string const& rule);
/// Whether every element in it is an object or an entry, whatever its name.
bool TakesAnyName(SceneTag const& tag);

/// Whether objects are found by the attribute, or it decides how much is read.
bool IsOfConsequence(SceneTag const& tag, TagAttribute const& attribute);

/// A copy of an example scene, in the document of which one mistake at a time is planted: it is found, at its line, and
/// nothing else is.
class Seeds : public ::testing::TestWithParam<char const*>
{
protected:
    Seeds();
    ~Seeds() override;

    std::string const& Text() const { return m_text; }
    std::vector<SceneTag> const& Tags() const { return m_tags; }

    /// Makes a text with a mistake.
    using Sow = std::function<Planted()>;

    // Plant in some of the places where it can be, in all when the environment's KVR_SEED_ALL is set.
    void PlantInTags(Plant const& plant);
    void PlantInValues(PlantValue const& plant);  ///< In attributes.
    /// In the texts of elements, whose names are of the pattern.
    void PlantInTexts(char const* names, std::string const& other, std::string const& rule);
    void ExpectSome(std::vector<Sow> const& all);  ///< What is made already.

private:
    using Counts = std::map<std::string, int>;

    Counts Check();
    // What there is now and was not before.
    std::vector<Finding> NewFindings();
    void Expect(Planted const& planted);

    TempFolder m_folder;
    std::string m_path;
    std::string m_text;
    std::string m_planted;
    std::vector<SceneTag> m_tags;
    std::vector<Finding> m_findings;
    Counts m_before;
    std::size_t m_count = 0;
    std::size_t m_places = 0;
};

/// The example scenes, and their names among those of tests.
auto const kSeedScenes =
    ::testing::Values("complete/complete.xml", "as1-oc-214/as1-oc-214.xml", "lcr_follower_arm/lcr_follower_arm.xml");
std::string NameOfSeedScene(::testing::TestParamInfo<char const*> const& scene);

}  // namespace KVR::Test
