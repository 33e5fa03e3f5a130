#include "inspect/query/FilteredScene.h"

#include <gmock/gmock.h>

#include "inspect/query/Query.h"
#include "scene/SceneSelection.h"
#include "scene/SceneTotals.h"
#include "tests/inspect/query/QueryScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// Two frames, each with two hinges of one part, and a lone bolt.
QueryScene& Gate()
{
    static QueryScene scene(
        File({"top"}) +
        Assembly("top", Instance("left", "frame") + Instance("right", "frame") + Instance("bolt", "p2")) +
        Assembly("frame", Instance("upper", "p1") + HiddenInstance("lower", "p1")) + Part("p1", Point("x1")) +
        Part("p2", Point("x2")));
    return scene;
}

KVR::Scene Filtered(std::vector<std::string> only, std::vector<std::string> hide = {})
{
    return FilteredScene(Gate().Producer(), Gate().Root(), {.only = std::move(only), .hide = std::move(hide)});
}

std::vector<std::string> Paths(std::vector<std::string> only, std::vector<std::string> hide = {})
{
    std::vector<std::string> paths = PathsOf(Filtered(std::move(only), std::move(hide)));
    EXPECT_EQ(paths.front(), "f");
    paths.erase(paths.begin());
    return paths;
}

TEST(FilteredScene, OnlyTheOccurrencesAskedForStay)
{
    EXPECT_THAT(Paths({"[id=left] > part[visible]"}), ElementsAre("top", "top/left", "top/left/upper"));
    EXPECT_THAT(Paths({"part[path~\"*right*\"]", "part[id=bolt]"}),
                ElementsAre("top", "top/right", "top/right/upper", "top/right/lower", "top/bolt"));
}

TEST(FilteredScene, WhatIsHiddenGoesInItsPlaceAlone)
{
    EXPECT_THAT(Paths({}, {"[id=left] > part[hidden]"}), ElementsAre("top", "top/left", "top/left/upper", "top/right",
                                                                     "top/right/upper", "top/right/lower", "top/bolt"));
    EXPECT_THAT(Paths({}, {"part[component.id=p1]"}), ElementsAre("top", "top/left", "top/right", "top/bolt"));
    EXPECT_THAT(Paths({}, {"file[depth=0]"}), IsEmpty());
}

TEST(FilteredScene, BothAtOnceAndWithNames)
{
    EXPECT_THAT(Paths({"[id=left] > *", "bolt"}, {"part[hidden]"}),
                ElementsAre("top", "top/left", "top/left/upper", "top/bolt"));
    EXPECT_THAT(Paths({"*[id=right]"}, {"upper"}), ElementsAre("top", "top/right", "top/right/lower"));
    EXPECT_THAT(Paths({"frame"}, {"part[path~'*/Label of left/*']"}),
                ElementsAre("top", "top/left", "top/right", "top/right/upper", "top/right/lower"));
}

TEST(FilteredScene, NamesAloneAreAsEver)
{
    EXPECT_THAT(Paths({"left"}), ElementsAre("top", "top/left", "top/left/upper", "top/left/lower"));
    EXPECT_THROW(Filtered({"part[1]"}), SceneFilterError);
    EXPECT_THROW(Filtered({"part[visible]", "nobody"}), SceneFilterError);
}

TEST(FilteredScene, AnExpressionThatNothingFitsFails)
{
    EXPECT_THROW(Filtered({"part[depth=9]"}), QueryError);
    EXPECT_THROW(Filtered({}, {"part[depth=9]"}), QueryError);
    EXPECT_THROW(Filtered({"part[depth=]"}), QueryError);
}

TEST(FilteredScene, OccurrencesOfWhichTheSameIsWantedShareACopy)
{
    KVR::Scene const scene = Filtered({"part[visible and component.id=p1]"});
    // The five read, and copies of the file, the top, one frame and, without their points, of both parts.
    EXPECT_EQ(scene.Components().size(), 10U);
    EXPECT_EQ(SceneTotals::Of(scene).occurrences, 6U);
    EXPECT_EQ(scene.FilteredGeometry(), 2U);
}

TEST(FilteredScene, PlacesThatTheWalkDoesNotHaveMeanNothing)
{
    KVR::Scene scene(Gate().Producer(), Gate().Root());
    scene.Reduce({{3, 1000}, {}, {2000}});
    EXPECT_THAT(PathsOf(scene), ElementsAre("f", "top", "top/left", "top/left/upper"));
}

}  // namespace

}  // namespace KVR::Test
