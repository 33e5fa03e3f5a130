#include "inspect/statistics/OccurrenceStatistics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "inspect/statistics/ReadingMeter.h"
#include "scene/OccurrenceWalk.h"
#include "tests/inspect/query/QueryScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A scene of boxes with its statistics.
struct MeasuredScene
{
    MeasuredScene(std::string const& text, std::vector<BoxMesh> const& boxes)
        : meter(false), scene(text, boxes), statistics((meter.Stop(), SceneStatistics::Of(scene.Model(), meter)))
    {
    }

    OccurrenceStatistics Occurrences(std::size_t most) const { return {scene.Model(), statistics, most}; }

    ReadingMeter meter;
    QueryScene scene;
    SceneStatistics statistics;
};

std::vector<std::string> PathsOf(OccurrenceStatistics const& occurrences)
{
    std::vector<std::string> paths;
    for (OccurrenceStatistics::Occurrence const& occurrence : occurrences.Largest())
        paths.push_back(occurrences.PathOf(occurrence));
    return paths;
}

BoxMesh Box(std::string const& id)
{
    return {id, {1, 2, 3}};
}

// One of its five faces less.
BoxMesh OpenBox(std::string const& id)
{
    return {id, {1, 2, 3}, true};
}

// Assemblies in one another, each of which has the next one twice; the last one has a part.
std::string Doubling(int levels)
{
    std::string text = File({"d0"});
    for (int i = 0; i < levels; ++i)
    {
        std::string const number = std::to_string(i);
        std::string const next = "d" + std::to_string(i + 1);
        text += Assembly("d" + number, Instance("a" + number, next) + Instance("b" + number, next));
    }
    return text + Assembly("d" + std::to_string(levels), Instance("i", "p")) + Part("p", Mesh("m"));
}

}  // namespace

TEST(OccurrenceStatistics, WhatIsThereOnceIsSharedByItsOccurrences)
{
    MeasuredScene const scene(File({"top", "r"}) +
                                  Assembly("top", Instance("i", "p") + Instance("j", "p") + Instance("k", "none")) +
                                  Part("p", Mesh("a")) + Part("r", Mesh("c")) + Part("none", ""),
                              {Box("a"), OpenBox("c")});
    OccurrenceStatistics const occurrences = scene.Occurrences(100);
    auto const& largest = occurrences.Largest();
    ASSERT_EQ(largest.size(), 5U);
    EXPECT_EQ(occurrences.Count(), 5U);
    auto const amount = [&](std::size_t i) { return occurrences.AmountOf(largest[i]); };
    // The root has all bytes, once, and all triangles as they stand there.
    EXPECT_DOUBLE_EQ(amount(0).bytes, scene.statistics.all.bytes);
    EXPECT_DOUBLE_EQ(amount(0).memory, scene.statistics.all.memory);
    EXPECT_DOUBLE_EQ(amount(0).seconds, scene.statistics.all.seconds);
    EXPECT_EQ(amount(0).triangles, scene.statistics.occurring.triangles);
    EXPECT_EQ(amount(0).meshes, 3U);
    SceneStatistics::Amount const own = scene.statistics.components.front().own;
    EXPECT_THAT(PathsOf(occurrences), ElementsAre("File", "File/Label of top", "File/Label of r",
                                                  "File/Label of top/Label of i", "File/Label of top/Label of j"));
    EXPECT_DOUBLE_EQ(amount(3).bytes, own.bytes / 2);
    EXPECT_DOUBLE_EQ(amount(3).seconds, own.seconds / 2);
    EXPECT_EQ(amount(3).triangles, own.triangles);
    EXPECT_EQ(occurrences.CountOf(largest[3]), 2U);
    EXPECT_EQ(occurrences.CountOf(largest[2]), 1U);
    EXPECT_EQ(largest[4].above, 1U);
}

TEST(OccurrenceStatistics, TheListIsTheBeginningOfThatOfAll)
{
    MeasuredScene const scene(
        File({"top"}) +
            Assembly("top", Instance("i", "p") + Instance("x", "sub") + Instance("j", "q") + Instance("y", "sub")) +
            Assembly("sub", Instance("k", "q") + Instance("l", "r") + Instance("m", "r")) + Part("p", Mesh("a")) +
            Part("q", Mesh("b") + Mesh("c")) + Part("r", Mesh("d")),
        {Box("a"), Box("b"), OpenBox("c"), OpenBox("d")});
    OccurrenceStatistics const all = scene.Occurrences(1000);
    std::size_t count = 0;
    for (OccurrenceWalk walk(scene.scene.Model()); walk.Next();)
        ++count;
    ASSERT_EQ(all.Largest().size(), count);
    EXPECT_TRUE(std::is_sorted(all.Largest().begin(), all.Largest().end(),
                               [&](auto const& a, auto const& b)
                               { return all.AmountOf(a).bytes > all.AmountOf(b).bytes; }));
    std::vector<std::string> const paths = PathsOf(all);
    for (std::size_t most = 0; most <= count; ++most)
    {
        OccurrenceStatistics const some = scene.Occurrences(most);
        EXPECT_EQ(PathsOf(some), std::vector<std::string>(paths.begin(), paths.begin() + static_cast<long>(most)));
        EXPECT_EQ(some.Count(), count);
    }
}

TEST(OccurrenceStatistics, MoreOccurrencesThanAnyNumberHoldsAreNotGoneThrough)
{
    MeasuredScene const scene(Doubling(90), {Box("m")});
    OccurrenceStatistics const occurrences = scene.Occurrences(200);
    EXPECT_EQ(occurrences.Largest().size(), 200U);
    EXPECT_EQ(occurrences.Count(), std::numeric_limits<unsigned long long>::max());
    SceneStatistics::Amount const& root = occurrences.AmountOf(occurrences.Largest()[0]);
    EXPECT_NEAR(root.bytes, scene.statistics.all.bytes, 1e-6);
    EXPECT_NEAR(occurrences.AmountOf(occurrences.Largest()[3]).bytes, scene.statistics.all.bytes / 2, 1e-6);
}

TEST(OccurrenceStatistics, ASceneWithoutGeometryHasNone)
{
    MeasuredScene const scene(File({"p"}) + Part("p", ""), {});
    OccurrenceStatistics const occurrences = scene.Occurrences(10);
    EXPECT_TRUE(occurrences.Largest().empty());
    EXPECT_EQ(occurrences.Count(), 0U);
}

}  // namespace KVR::Test
