#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scene/Scene.h"
#include "scene/SceneTotals.h"
#include "tests/scene/FakeScene.h"
#include "tests/scene/ModelScene.h"
#include "tests/support/RunOnStack.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// Cuts in words: component, placement and reason.
std::vector<std::string> CutsOf(KVR::Scene const& scene)
{
    constexpr char const* kReasons[] = {"none", "missing", "cycle", "deep", "filtered"};
    std::vector<std::string> words;
    for (KVR::Scene::Cut const& cut : scene.Cuts())
    {
        SceneComponent const& component = scene.Components()[cut.component];
        std::string const placement =
            cut.placement == kNoIndex ? "" : std::string(component.placements[cut.placement].id);
        words.push_back(std::string(component.id) + "/" + placement + ": " + kReasons[static_cast<int>(cut.reason)]);
        if (cut.placement != kNoIndex)
        {
            EXPECT_EQ(component.placements[cut.placement].cut, cut.reason);
        }
    }
    return words;
}

SceneFilter Only(std::vector<std::string> names)
{
    SceneFilter filter;
    filter.only = std::move(names);
    return filter;
}

SceneFilter Without(std::vector<std::string> names)
{
    SceneFilter filter;
    filter.hide = std::move(names);
    return filter;
}

// Two assemblies that both have the part "p", one of them also "q".
std::string TwoModules()
{
    return File({"top"}) + Assembly("top", Instance("left", "a") + Instance("right", "b")) +
           Assembly("a", Instance("a1", "p") + Point("own")) +
           Assembly("b", Instance("b1", "p") + Instance("b2", "q")) + Part("p", Point("x") + Point("y")) + Part("q");
}

}  // namespace

TEST(SceneCuts, AMissingTargetIsListedAndItsPlacementStays)
{
    FakeScene producer;
    producer.Assembly("a", {"i", "j"}).Part("p");
    producer.Instance("i", "ghost");
    producer.Instance("j", "p");
    KVR::Scene const scene(producer, "a");
    EXPECT_THAT(CutsOf(scene), ElementsAre("a/i: missing"));
    ASSERT_EQ(scene.Components()[0].placements.size(), 2U);
    EXPECT_EQ(scene.Components()[0].placements[0].target, kNoIndex);
    EXPECT_EQ(scene.Components()[0].children[1].placement, 1U);
    EXPECT_THAT(PathsOf(scene), ElementsAre("a", "j"));
}

TEST(SceneCuts, ATargetThatIsGeometryOrAnInstanceIsMissing)
{
    FakeScene producer;
    producer.Assembly("a", {"i", "j"}).Point("g");
    producer.Instance("i", "g");
    producer.Instance("j", "i");
    EXPECT_THAT(CutsOf(KVR::Scene(producer, "a")), ElementsAre("a/i: missing", "a/j: missing"));
}

TEST(SceneCuts, WhatWouldPlaceSomethingWithinItselfIsCut)
{
    FakeScene producer;
    producer.Assembly("a", {"i", "own"}).Assembly("b", {"back", "j"}).Part("p");
    producer.Instance("i", "b");
    producer.Instance("own", "a");
    producer.Instance("back", "a");
    producer.Instance("j", "p");
    KVR::Scene const scene(producer, "a");
    EXPECT_THAT(CutsOf(scene), ElementsAre("b/back: cycle", "a/own: cycle"));
    EXPECT_THAT(PathsOf(scene), ElementsAre("a", "i", "i/j"));
    // What it would have placed is still told.
    EXPECT_EQ(scene.Components()[1].placements[0].target, 0U);
}

TEST(SceneCuts, AThousandComponentsMayStandInOneAnother)
{
    FakeScene producer;
    producer.Chain(999);
    KVR::Scene const scene(producer, "a0");
    EXPECT_THAT(CutsOf(scene), IsEmpty());
    EXPECT_EQ(PathsOf(scene).size(), 1000U);
    FakeScene longer;
    longer.Chain(1000);
    KVR::Scene const deeper(longer, "a0");
    EXPECT_THAT(CutsOf(deeper), ElementsAre("a999/i999: deep"));
    EXPECT_EQ(PathsOf(deeper).size(), 1000U);
}

TEST(SceneCuts, WhatIsReachedByAShortWayAndByALongOneIsCutOnTheLongOneAlone)
{
    SceneFilter filter;
    filter.mostLevels = 3;
    ModelScene const scene(File({"a"}) + Assembly("a", Instance("short", "p") + Instance("long", "b")) +
                               Assembly("b", Instance("i", "p")) + Part("p"),
                           filter);
    EXPECT_THAT(CutsOf(scene.Model()), ElementsAre("b/i: deep"));
    EXPECT_THAT(PathsOf(scene.Model()), ElementsAre("f", "a", "a/short", "a/long"));
}

TEST(SceneCuts, AnyDepthIsReadAndWalkedOnASmallStack)
{
    constexpr unsigned kLevels = 20'000;
    SceneFilter filter;
    filter.mostLevels = kNoIndex;
    FakeScene producer;
    producer.Chain(kLevels);
    RunOnStack(kSmallStack,
               [&]
               {
                   KVR::Scene const scene(producer, "a0", filter);
                   EXPECT_THAT(scene.Cuts(), IsEmpty());
                   unsigned long long count = 0;
                   std::size_t deepest = 0;
                   for (OccurrenceWalk walk(scene); walk.Next(); ++count)
                       deepest = walk.Depth();
                   EXPECT_EQ(count, kLevels + 1);
                   EXPECT_EQ(deepest, kLevels);
                   EXPECT_EQ(SceneTotals::Of(scene).deepestLevel, kLevels + 1);
                   EXPECT_EQ(SceneTotals::CountOccurrences(scene), kLevels + 1);
               });
}

TEST(SceneCuts, AFilteredSceneOfAnyDepthIsReadOnASmallStack)
{
    SceneFilter filter = Only({"p"});
    filter.mostLevels = kNoIndex;
    FakeScene producer;
    producer.Chain(5'000);
    RunOnStack(kSmallStack, [&] { EXPECT_EQ(PathsOf(KVR::Scene(producer, "a0", filter)).size(), 5'001U); });
}

TEST(SceneFiltering, WithoutNamesAllIsThere)
{
    EXPECT_THAT(PathsOf(ModelScene(TwoModules()).Model()),
                ElementsAre("f", "top", "top/left", "top/left/a1", "top/right", "top/right/b1", "top/right/b2"));
}

TEST(SceneFiltering, WhatIsHiddenIsLeftOutWithAllBelowIt)
{
    ModelScene const byInstance(TwoModules(), Without({"right"}));
    EXPECT_THAT(PathsOf(byInstance.Model()), ElementsAre("f", "top", "top/left", "top/left/a1"));
    EXPECT_THAT(CutsOf(byInstance.Model()), ElementsAre("top/right: filtered"));
    ModelScene const byComponent(TwoModules(), Without({"p"}));
    EXPECT_THAT(PathsOf(byComponent.Model()), ElementsAre("f", "top", "top/left", "top/right", "top/right/b2"));
    ModelScene const byLabel(TwoModules(), Without({"Label of b2"}));
    EXPECT_THAT(CutsOf(byLabel.Model()), ElementsAre("b/b2: filtered"));
}

TEST(SceneFiltering, HiddenGeometryIsCounted)
{
    ModelScene const scene(TwoModules(), Without({"x", "own"}));
    EXPECT_EQ(scene.Model().FilteredGeometry(), 2U);
    ASSERT_EQ(scene.Component("p").geometry.size(), 1U);
    EXPECT_EQ(scene.Component("p").geometry[0].id, "y");
}

TEST(SceneFiltering, WhatIsWantedStaysWithAllAboveAndBelowIt)
{
    ModelScene const scene(TwoModules(), Only({"b1"}));
    EXPECT_THAT(PathsOf(scene.Model()), ElementsAre("f", "top", "top/right", "top/right/b1"));
    // Below something wanted all stays.
    EXPECT_EQ(scene.Component("p").geometry.size(), 2U);
}

TEST(SceneFiltering, AComponentMayStandUnderWhatIsWantedAndElsewhere)
{
    ModelScene const scene(TwoModules(), Only({"a", "x"}));
    std::vector<std::string> geometry;
    for (OccurrenceWalk walk(scene.Model()); walk.Next();)
        for (SceneGeometry const& piece : walk.Component().geometry)
            geometry.push_back(std::string(walk.Path().back()) + ":" + std::string(piece.id));
    EXPECT_THAT(geometry, ElementsAre("left:own", "a1:x", "a1:y", "b1:x"));
}

TEST(SceneFiltering, ALayerStandsForWhatIsInItByIdLabelAndNumber)
{
    std::string const layered =
        File({"top"},
             "<LayerSet><ILayer ID='l' Label='Layer'><LayerInfo ID='3'/><GeometryItems Items='b2'/>"
             "</ILayer></LayerSet>");
    std::string const text = layered + TwoModules().substr(File({"top"}).size());
    for (char const* const name : {"l", "Layer", "3"})
    {
        ModelScene const scene(text, Without({name}));
        EXPECT_THAT(CutsOf(scene.Model()), ElementsAre("b/b2: filtered")) << name;
    }
}

TEST(SceneFiltering, ARootThatIsWantedStaysWhole)
{
    EXPECT_EQ(PathsOf(ModelScene(TwoModules(), Only({"f", "x"})).Model()).size(), 7U);
}

}  // namespace KVR::Test
