#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "scene/OccurrenceWalk.h"
#include "scene/SceneTotals.h"
#include "tests/scene/FakeScene.h"

// A producer that is none of this system's may answer anything.
namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// Its paths of overrides are empty, or longer than any scene.
class Overriding : public FakeListedAssembly
{
public:
    using FakeListedAssembly::FakeListedAssembly;

    unsigned long long CrossLevelVisibilityCount() const override { return 2; }
    void CrossLevelVisibilityAt(unsigned long long index, IdSet& path, bool&) const override
    {
        for (int i = 0; i < (index == 0 ? 0 : 5000); ++i)
            path.AddWithoutUniquenessCheck("x");
    }
};

std::vector<std::string> Met(KVR::Scene const& scene)
{
    std::vector<std::string> met;
    for (OccurrenceWalk walk(scene); walk.Next();)
        met.emplace_back(walk.Component().id);
    return met;
}

}  // namespace

TEST(NonsenseProducer, AnEmptyOneHasNoScene)
{
    FakeScene producer;
    KVR::Scene const scene(producer, "root");
    EXPECT_EQ(scene.Root(), kNoIndex);
    EXPECT_THAT(Met(scene), IsEmpty());
    EXPECT_EQ(SceneTotals::Of(scene).occurrences, 0U);
}

TEST(NonsenseProducer, TransformsThatPlaceNothingAreTheIdentity)
{
    FakeScene producer;
    producer.Part("p").Assembly("a", {"nan", "huge", "perspective"});
    producer.Instance("nan", "p").transform.SetElement(0, 3, std::numeric_limits<double>::quiet_NaN());
    producer.Instance("huge", "p").transform.SetElement(1, 1, 1e300);
    producer.Instance("perspective", "p").transform.SetElement(3, 0, 2.0);
    KVR::Scene const scene(producer, "a");
    for (ScenePlacement const& placement : scene.Components().at(0).placements)
        EXPECT_EQ(placement.transform, kIdentity) << placement.id;
    EXPECT_THAT(Met(scene), ElementsAre("a", "p", "p", "p"));
}

TEST(NonsenseProducer, OneObjectUnderSeveralIdsIsOnePlacement)
{
    FakeScene producer;
    producer.Part("p").Assembly("a", {"i", "", "also", "ghost", "i"});
    producer.objects["also"] = &producer.Instance("i", "p");
    KVR::Scene const scene(producer, "a");
    SceneComponent const& component = scene.Components().at(0);
    ASSERT_EQ(component.children.size(), 5U);
    EXPECT_EQ(component.placements.size(), 1U);
    EXPECT_EQ(component.children[0].placement, 0U);
    EXPECT_EQ(component.children[2].placement, 0U);
    EXPECT_EQ(component.children[4].placement, 0U);
    EXPECT_EQ(component.children[1].id, "");
    EXPECT_EQ(component.children[3].object, nullptr);
}

TEST(NonsenseProducer, OverridesWithoutAPathOrWithAnEndlessOneSayNothing)
{
    FakeScene producer;
    Overriding top("a", {});
    producer.objects["a"] = &top;
    KVR::Scene const scene(producer, "a");
    EXPECT_EQ(scene.Components().at(0).overrides, nullptr);
}

TEST(NonsenseProducer, ASetOfGeometryWithinItselfEnds)
{
    FakeScene producer;
    producer.Point("x").Set("s", {"t", "x", "s"}).Set("t", {"s", "x", "s"}).Assembly("a", {"s"});
    KVR::Scene const scene(producer, "a");
    EXPECT_EQ(scene.Components().at(0).geometry.size(), 2U);
    ASSERT_EQ(scene.Cuts().size(), 1U);
    EXPECT_EQ(scene.Cuts()[0].placement, kNoIndex);
    EXPECT_EQ(scene.Cuts()[0].reason, SceneCut::kTooDeep);
}

TEST(NonsenseProducer, SetsOfGeometryThatDoubleEnd)
{
    FakeScene producer;
    for (int i = 0; i < 40; ++i)
    {
        std::string const next = "s" + std::to_string(i + 1);
        producer.Set("s" + std::to_string(i), {next, next});
    }
    producer.Assembly("a", {"s0"});
    KVR::Scene const scene(producer, "a");
    ASSERT_EQ(scene.Cuts().size(), 1U);
    EXPECT_EQ(scene.Cuts()[0].reason, SceneCut::kTooDeep);
}

TEST(NonsenseProducer, WhatItThrowsPassesThrough)
{
    class Throwing : public FakeListedAssembly
    {
    public:
        using FakeListedAssembly::FakeListedAssembly;
        unsigned long long ChildCount() const override { return ~0ULL; }
    };
    FakeScene producer;
    Throwing top("a", {"x"});
    producer.objects["a"] = &top;
    EXPECT_THROW(KVR::Scene(producer, "a"), std::out_of_range);
}

TEST(NonsenseProducer, AnObjectThatVisitsNobodyIsAChildAlone)
{
    class Silent : public FakePart
    {
    public:
        using FakePart::FakePart;
        void AcceptVisitor(ObjectVisitor*) override {}
    };
    FakeScene producer;
    Silent silent(UTF8String("silent"));
    producer.objects["silent"] = &silent;
    producer.Instance("i", "silent");
    producer.Assembly("a", {"silent", "i"});
    KVR::Scene const scene(producer, "a");
    EXPECT_EQ(scene.Components().size(), 1U);
    EXPECT_EQ(scene.Components()[0].children.at(0).placement, kNoIndex);
    EXPECT_EQ(scene.Components()[0].placements.at(0).cut, SceneCut::kMissingTarget);
}

}  // namespace KVR::Test
