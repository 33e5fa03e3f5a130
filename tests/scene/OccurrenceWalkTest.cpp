#include "scene/OccurrenceWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "scene/SceneTotals.h"
#include "tests/scene/FakeScene.h"
#include "tests/scene/ModelScene.h"
#include "tests/support/ResidentMemory.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string TwoOfEach()
{
    return File({"top", "p"}) +
           Assembly("top", Instance("i1", "a") + HiddenInstance("i2", "a") + MovedInstance("i3", "p", 3)) +
           Assembly("a", Instance("j1", "p") + Instance("j2", "p")) + Part("p");
}

// Assemblies in one another, each with two of the next one, so that there are 2^levels of the part at the end.
std::string Doubling(unsigned levels)
{
    std::string text = File({"a0"});
    for (unsigned level = 0; level < levels; ++level)
    {
        std::string const number = std::to_string(level);
        std::string const below = level + 1 < levels ? "a" + std::to_string(level + 1) : "p";
        text += Assembly("a" + number, Instance("l" + number, below) + Instance("r" + number, below));
    }
    return text + Part("p");
}

}  // namespace

TEST(OccurrenceWalk, GoesDepthFirstInTheScenesOrder)
{
    ModelScene const scene(TwoOfEach());
    EXPECT_THAT(PathsOf(scene.Model()), ElementsAre("f", "top", "top/i1", "top/i1/j1", "top/i1/j2", "top/i2",
                                                    "top/i2/j1", "top/i2/j2", "top/i3", "p"));
}

TEST(OccurrenceWalk, MayMeetWhatIsVisibleAlone)
{
    ModelScene const scene(TwoOfEach());
    EXPECT_THAT(PathsOf(scene.Model(), OccurrenceWalk::Mode::kVisible),
                ElementsAre("f", "top", "top/i1", "top/i1/j1", "top/i1/j2", "top/i3", "p"));
}

TEST(OccurrenceWalk, MayLeaveOutWhatIsBelow)
{
    ModelScene const scene(TwoOfEach());
    std::vector<std::string> met;
    for (OccurrenceWalk walk(scene.Model()); walk.Next();)
    {
        met.emplace_back(walk.Component().id);
        if (walk.Component().id == "a")
            walk.SkipBelow();
    }
    EXPECT_THAT(met, ElementsAre("f", "top", "a", "a", "p", "p"));
}

TEST(OccurrenceWalk, SkippingBelowTheRootEndsIt)
{
    ModelScene const scene(TwoOfEach());
    OccurrenceWalk walk(scene.Model());
    ASSERT_TRUE(walk.Next());
    walk.SkipBelow();
    EXPECT_FALSE(walk.Next());
    EXPECT_FALSE(walk.Next());
}

TEST(OccurrenceWalk, TellsWherePlacementAndDepthAre)
{
    ModelScene const scene(TwoOfEach());
    OccurrenceWalk walk(scene.Model());
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(walk.Depth(), 0U);
    EXPECT_EQ(walk.Placement(), nullptr);
    EXPECT_EQ(walk.Above(), nullptr);
    EXPECT_EQ(walk.ComponentIndex(), scene.Model().Root());
    EXPECT_EQ(walk.Path().size(), 0U);
    ASSERT_TRUE(walk.Next());
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(walk.Depth(), 2U);
    ASSERT_TRUE(walk.Placement());
    EXPECT_EQ(walk.Placement()->id, "i1");
    ASSERT_TRUE(walk.Above());
    EXPECT_EQ(walk.Above()->id, "top");
    EXPECT_EQ(walk.Component().id, "a");
    EXPECT_THAT(walk.Path(), ElementsAre("top", "i1"));
}

TEST(OccurrenceWalk, PlacesAreTheSameWhicheverOccurrencesAreAskedForTheirs)
{
    ModelScene const scene(
        File({"top"}) +
        Assembly("top", MovedInstance("i1", "a", 1) + MovedInstance("i2", "a", 10) + MovedInstance("i3", "b", 100)) +
        Assembly("a", MovedInstance("j1", "b", 2) + MovedInstance("j2", "p", 3)) +
        Assembly("b", MovedInstance("k1", "p", 4)) + Part("p"));
    auto const placesWhere = [&](auto const& isAsked)
    {
        std::vector<double> places;
        int number = 0;
        for (OccurrenceWalk walk(scene.Model()); walk.Next(); ++number)
            if (isAsked(walk, number))
                places.push_back(walk.Place()[3]);
        return places;
    };
    EXPECT_THAT(placesWhere([](OccurrenceWalk const&, int) { return true; }),
                ElementsAre(0, 0, 1, 3, 7, 4, 10, 12, 16, 13, 100, 104));
    EXPECT_THAT(placesWhere([](OccurrenceWalk const& walk, int) { return walk.Component().id == "p"; }),
                ElementsAre(7, 4, 16, 13, 104));
    EXPECT_THAT(placesWhere([](OccurrenceWalk const&, int number) { return number == 4 || number == 10; }),
                ElementsAre(7, 100));
}

TEST(OccurrenceWalk, MayStartAtAnyComponentAsIfItWereTheRoot)
{
    ModelScene const scene(File({"top"}) + Assembly("top", MovedInstance("i", "a", 4), CrossLevel(Moves("[i][j]", 5))) +
                           Assembly("a", MovedInstance("j", "p", 1) + Instance("k", "p")) + Part("p"));
    OccurrenceWalk walk(scene.Model(), scene.Placement("top", "i").target);
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(walk.Component().id, "a");
    EXPECT_EQ(walk.PlacementIndex(), kNoIndex);
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(walk.PlacementIndex(), 0U);
    // Neither the place of the assembly nor what is said above it.
    EXPECT_EQ(walk.Place()[3], 1.0);
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(walk.PlacementIndex(), 1U);
    EXPECT_EQ(walk.Placement()->id, "k");
    EXPECT_FALSE(walk.Next());
}

TEST(OccurrenceWalk, PlacesAreInTheScenesUnit)
{
    ModelScene const scene(File({"top"}) +
                           Assembly("top", Instance("h", "a"), "<Unit LengthUnit='kUnitType_Millimeter'/>") +
                           Assembly("a", MovedInstance("i", "p", 2), "<Unit LengthUnit='kUnitType_Meter'/>") +
                           Part("p", {}, "<Unit LengthUnit='kUnitType_Centimeter'/>"));
    OccurrenceWalk walk(scene.Model());
    ASSERT_TRUE(walk.Next() && walk.Next() && walk.Next() && walk.Next());
    EXPECT_EQ(walk.Component().id, "p");
    // Two metres from the assembly, in which a centimetre of the part is a hundredth.
    EXPECT_EQ(walk.Step()[3], 2.0);
    EXPECT_EQ(walk.Step()[0], 0.01);
    EXPECT_EQ(walk.Place()[3], 2000.0);
    EXPECT_EQ(walk.Place()[0], 10.0);
}

TEST(OccurrenceWalk, OverridesFromAboveHold)
{
    ModelScene const scene(File({"top"}) +
                           Assembly("top", Instance("i", "a"), CrossLevel(Moves("[i][j]", 5) + Shows("[i][k]", true))) +
                           Assembly("a", MovedInstance("j", "p", 1) + HiddenInstance("k", "p")) + Part("p"));
    std::vector<double> places;
    for (OccurrenceWalk walk(scene.Model(), OccurrenceWalk::Mode::kVisible); walk.Next();)
        if (walk.Component().id == "p")
            places.push_back(walk.Place()[3]);
    EXPECT_THAT(places, ElementsAre(5.0, 0.0));
}

TEST(OccurrenceWalk, AMillionOccurrencesOfAFewComponentsTakeNoMemory)
{
    ModelScene const scene(Doubling(20));
    // What the walk itself takes once.
    OccurrenceWalk walk(scene.Model());
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(walk.Next());
    long const before = PeakMemoryKB();
    unsigned long long count = 100;
    unsigned long long parts = 0;
    for (; walk.Next(); ++count)
        parts += walk.Component().kind == SceneComponent::Kind::kPart ? 1 : 0;
    EXPECT_EQ(count, (1ULL << 21U));
    EXPECT_GE(parts, (1ULL << 20U) - 100);
    EXPECT_LE(PeakMemoryKB() - before, 1024);
}

TEST(SceneTotals, CountWhatIsThereAndHowOftenItOccurs)
{
    ModelScene const scene(TwoOfEach());
    SceneTotals const totals = SceneTotals::Of(scene.Model());
    EXPECT_EQ(totals.files, 1U);
    EXPECT_EQ(totals.assemblies, 2U);
    EXPECT_EQ(totals.parts, 1U);
    EXPECT_EQ(totals.instances, 5U);
    EXPECT_EQ(totals.occurrences, 10U);
    EXPECT_EQ(totals.fileOccurrences, 1U);
    EXPECT_EQ(totals.assemblyOccurrences, 3U);
    EXPECT_EQ(totals.partOccurrences, 6U);
    EXPECT_EQ(totals.deepestLevel, 3U);
    std::vector<unsigned long long> of;
    for (std::size_t i = 0; i < scene.Model().Components().size(); ++i)
        of.push_back(totals.occurrencesOf.at(i));
    // The file, the top, the part and the assembly, in the order in which they are met.
    EXPECT_THAT(of, ElementsAre(1U, 1U, 6U, 2U));
}

TEST(SceneTotals, AFileIsNoLevel)
{
    ModelScene const scene(File({"a"}) + Assembly("a", Instance("i", "g")) +
                           "<IFile ID='g'><ChildSet><Child ID='p'/></ChildSet></IFile>" + Part("p"));
    SceneTotals const totals = SceneTotals::Of(scene.Model());
    EXPECT_EQ(totals.files, 2U);
    EXPECT_EQ(totals.deepestLevel, 2U);
}

TEST(SceneTotals, InstancesThatPlaceNothingCountAndPlacesInCyclesDoNot)
{
    FakeScene producer;
    producer.Assembly("a", {"i", "own"});
    producer.Instance("i", "ghost");
    producer.Instance("own", "a");
    SceneTotals const totals = SceneTotals::Of(KVR::Scene(producer, "a"));
    EXPECT_EQ(totals.instances, 2U);
    EXPECT_EQ(totals.occurrences, 1U);
}

TEST(SceneTotals, AnInstanceOfTwoAssembliesIsOne)
{
    ModelScene const scene(File({"a", "b"}) + Assembly("a", Instance("i", "p")) + Assembly("b", "<Child ID='i'/>") +
                           Part("p"));
    SceneTotals const totals = SceneTotals::Of(scene.Model());
    EXPECT_EQ(scene.Component("b").placements.size(), 1U);
    EXPECT_EQ(totals.instances, 1U);
    EXPECT_EQ(totals.partOccurrences, 2U);
}

TEST(SceneTotals, OccurrencesAreTheSameCountedAlone)
{
    for (std::string const& text : {TwoOfEach(), Doubling(40), Doubling(64), Doubling(70)})
    {
        ModelScene const scene(text);
        EXPECT_EQ(SceneTotals::CountOccurrences(scene.Model()), SceneTotals::Of(scene.Model()).occurrences);
    }
    SceneFilter filter;
    filter.only = {"j1"};
    EXPECT_EQ(SceneTotals::CountOccurrences(ModelScene(TwoOfEach(), filter).Model()), 6U);
}

TEST(SceneTotals, InstancesFarFromOneAnotherCountOnceEach)
{
    FakeScene producer;
    producer.Assembly("a", {"i", "b", "j"});
    producer.Instance("i", "b");
    // Between the objects of the two instances.
    std::vector<std::unique_ptr<char[]>> between;
    for (int block = 0; block < 100; ++block)
        between.push_back(std::make_unique<char[]>(std::size_t{64} * 1024));
    producer.Assembly("b", {"j", "j"});
    producer.Instance("j", "ghost");
    EXPECT_EQ(SceneTotals::Of(KVR::Scene(producer, "a")).instances, 2U);
}

TEST(SceneTotals, CountsStopAtTheLargestNumber)
{
    SceneTotals const totals = SceneTotals::Of(ModelScene(Doubling(70)).Model());
    EXPECT_EQ(totals.occurrences, ~0ULL);
    EXPECT_EQ(totals.partOccurrences, ~0ULL);
    EXPECT_EQ(totals.instances, 140U);
    SceneTotals const fewer = SceneTotals::Of(ModelScene(Doubling(40)).Model());
    EXPECT_EQ(fewer.partOccurrences, 1ULL << 40U);
}

TEST(SceneTotals, WhatAFilterLeavesOutIsNotCounted)
{
    SceneFilter filter;
    filter.only = {"j1"};
    SceneTotals const totals = SceneTotals::Of(ModelScene(TwoOfEach(), filter).Model());
    EXPECT_EQ(totals.partOccurrences, 2U);
    EXPECT_EQ(totals.instances, 3U);
}

}  // namespace KVR::Test
