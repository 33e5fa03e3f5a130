#include "scene/SceneFilter.h"

#include <gmock/gmock.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "scene/NearestNames.h"
#include "tests/scene/ModelScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// A gate with two hinges, and two layers, one of which holds nothing that is placed.
std::string Gate()
{
    return File(
               {"top"},
               R"(<LayerSet><ILayer ID="l1" Label="Fittings"><LayerInfo ID="7"/><GeometryItems Items="p2,,p3"/></ILayer>
<ILayer ID="l2" Label="Faces"><LayerInfo ID="8"/><GeometryItems Items="body.f1"/></ILayer></LayerSet>)") +
           Assembly("top", Instance("door", "p1") + Instance("left", "p2") + Instance("right", "p3") +
                               Instance("a*", "p4") + Instance("ab", "p5")) +
           Part("p1", Point("x1")) + Part("p2", Point("x2")) + Part("p3", Point("x3")) + Part("p4") + Part("p5");
}

std::vector<std::string> ShownBy(SceneFilter const& filter)
{
    std::vector<std::string> paths = PathsOf(ModelScene(Gate(), filter).Model());
    std::erase_if(paths, [](std::string const& path) { return path.find('/') == std::string::npos; });
    return paths;
}

SceneFilter Only(std::vector<std::string> names)
{
    return {.only = std::move(names), .hide = {}};
}

SceneFilter Without(std::vector<std::string> names)
{
    return {.only = {}, .hide = std::move(names)};
}

std::vector<SceneFilterError::Unmatched> UnmatchedBy(SceneFilter const& filter)
{
    try
    {
        ModelScene const scene(Gate(), filter);
        return {};
    }
    catch (SceneFilterError const& error)
    {
        return error.Names();
    }
}

}  // namespace

TEST(SceneFilter, APatternStandsForAllNamesThatFit)
{
    EXPECT_THAT(ShownBy(Only({"?eft"})), ElementsAre("top/left"));
    EXPECT_THAT(ShownBy(Only({"*t"})), ElementsAre("top/left", "top/right"));
    EXPECT_EQ(ShownBy(Only({"t?p"})).size(), 5u) << "what is named stays whole";
    EXPECT_THAT(ShownBy(Without({"*ef*", "d?or"})), ElementsAre("top/right", "top/a*", "top/ab"));
    EXPECT_THAT(ShownBy(Without({"Fit*"})), ElementsAre("top/door", "top/a*", "top/ab")) << "a layer's label";
    EXPECT_THAT(ShownBy(Only({"x?"})), ElementsAre("top/door", "top/left", "top/right")) << "geometry";
}

TEST(SceneFilter, ANameThatHoldsACharacterOfPatternsIsMeantItself)
{
    EXPECT_THAT(ShownBy(Only({"a*"})), ElementsAre("top/a*"));
    EXPECT_THAT(ShownBy(Only({"?b"})), ElementsAre("top/ab"));
}

TEST(SceneFilter, TheRootCanBeLeftOut)
{
    EXPECT_THAT(ShownBy(Without({"f"})), IsEmpty());
}

TEST(SceneFilter, ANameOfNothingFailsWithTheNearest)
{
    auto const unmatched = UnmatchedBy({.only = {"left", "Rigth"}, .hide = {"dor", "right"}});
    ASSERT_EQ(unmatched.size(), 2u);
    EXPECT_EQ(unmatched[0].name, "dor");
    EXPECT_EQ(unmatched[0].nearest.front(), "door");
    EXPECT_EQ(unmatched[1].name, "Rigth");
    EXPECT_THAT(unmatched[1].nearest, ElementsAre("right", testing::_, testing::_));
    EXPECT_FALSE(unmatched[1].isLayer);
    for (char const* const name : {"nobody", "DOOR", "z*", "", "9", "doo"})
    {
        EXPECT_EQ(UnmatchedBy(Only({name})).size(), 1u) << name;
        EXPECT_EQ(UnmatchedBy(Without({name})).size(), 1u) << name;
    }
}

TEST(SceneFilter, ALayerThatHoldsNothingToTakeFails)
{
    for (char const* const name : {"Faces", "l2", "8", "Fa*"})
    {
        auto const unmatched = UnmatchedBy(Without({name}));
        ASSERT_EQ(unmatched.size(), 1u) << name;
        EXPECT_TRUE(unmatched.front().isLayer);
        EXPECT_THAT(unmatched.front().nearest, IsEmpty());
    }
    EXPECT_THAT(UnmatchedBy(Without({"Fittings", "l1", "7"})), IsEmpty());
}

TEST(SceneFilter, TheErrorIsOneSentence)
{
    SceneFilterError const error({{"a", false, {"b", "c"}}, {"d", true, {}}});
    EXPECT_STREQ(error.what(),
                 "nothing has the name a, the nearest are b, c; nothing to take or leave out is in the layer d");
}

TEST(SceneFilter, FitsByCharactersOfUtf8)
{
    for (char const* const pattern : {"abc", "*", "a*", "*c", "a?c", "???", "*b*", "a**c", "a*b*c", "*?c", "abc*"})
        EXPECT_TRUE(SceneFilter::Fits("abc", pattern)) << pattern;
    for (char const* const pattern : {"", "ab", "bc", "abcd", "a?", "????", "*d", "A*", "a*bb*c", "?abc"})
        EXPECT_FALSE(SceneFilter::Fits("abc", pattern)) << pattern;
    EXPECT_TRUE(SceneFilter::Fits("", "*"));
    EXPECT_FALSE(SceneFilter::Fits("", "?"));
    EXPECT_TRUE(SceneFilter::Fits("Größe", "Gr??e"));
    EXPECT_FALSE(SceneFilter::Fits("Größe", "Gr????e"));
    EXPECT_TRUE(SceneFilter::Fits("門2", "?2"));
    EXPECT_TRUE(SceneFilter::Fits("x門2", "*?2"));
    // Without going back to every star there is.
    EXPECT_FALSE(SceneFilter::Fits(std::string(20'000, 'a'), "*a*a*a*a*a*a*a*a*a*b"));
}

// What a pattern means, written down as it is said.
bool Means(std::string_view pattern, std::string_view name)
{
    if (pattern.empty())
        return name.empty();
    if (pattern.front() == '*')
        return Means(pattern.substr(1), name) || (!name.empty() && Means(pattern, name.substr(1)));
    return !name.empty() && (pattern.front() == '?' || pattern.front() == name.front()) &&
           Means(pattern.substr(1), name.substr(1));
}

RC_GTEST_PROP(SceneFilter, FitsWhatThePatternMeans, ())
{
    constexpr int kLongest = 8;
    auto const name = *rc::gen::resize(kLongest, rc::gen::container<std::string>(rc::gen::element('a', 'b', '*')));
    auto const pattern =
        *rc::gen::resize(kLongest, rc::gen::container<std::string>(rc::gen::element('a', 'b', '*', '?')));
    RC_ASSERT(SceneFilter::Fits(name, pattern) == Means(pattern, name));
}

TEST(NearestNames, AreThoseWithTheFewestChangesWithoutRegardToCase)
{
    NearestNames nearest("L-Braket");
    for (char const* const name : {"rod", "l-bracket", "l-bracket_1", "", "nut", "l-bracket", "plate"})
        nearest.Add(name);
    EXPECT_THAT(nearest.Names(), ElementsAre("l-bracket", "l-bracket_1", "plate"));
}

TEST(NearestNames, HoldOnesInWhichTheTextStandsForNear)
{
    NearestNames nearest("hinge", 2);
    for (char const* const name : {"hing", "binge2", "gate_HINGE_left_lower", "fringe"})
        nearest.Add(name);
    EXPECT_THAT(nearest.Names(), ElementsAre("gate_HINGE_left_lower", "hing"));
}

TEST(NearestNames, DoNotDependOnTheOrderAndTakeTheFirstByTheirBytesAmongEquals)
{
    std::vector<std::string> names = {"d1", "d2", "d3", "d4", "e"};
    do
    {
        NearestNames nearest("d", 3);
        for (std::string const& name : names)
            nearest.Add(name);
        EXPECT_THAT(nearest.Names(), ElementsAre("d1", "d2", "d3"));
    } while (std::next_permutation(names.begin(), names.end()));
}

TEST(NearestNames, CountSwappedNeighboursOnceAndKeepToADistance)
{
    NearestNames nearest("hnige", 3, 1);
    for (char const* const name : {"hinge", "hedge", "h"})
        nearest.Add(name);
    EXPECT_THAT(nearest.Names(), ElementsAre("hinge"));
}

TEST(NearestNames, TakesTextsOfAnyLength)
{
    NearestNames nearest(std::string(100'000, 'x'));
    nearest.Add(std::string(100'000, 'x'));
    nearest.Add("x");
    EXPECT_THAT(nearest.Names(), ElementsAre("x"));
    NearestNames none("x", 0);
    none.Add("x");
    EXPECT_THAT(none.Names(), IsEmpty());
}

}  // namespace KVR::Test
