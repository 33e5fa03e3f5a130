#include "scene/SceneBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scene/SceneMeshes.h"
#include "tests/scene/ModelScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// The boxes of all visible occurrences that show something, by their paths.
std::vector<std::pair<std::string, SceneBox>> BoxesOf(KVR::Scene const& scene)
{
    std::vector<std::pair<std::string, SceneBox>> boxes;
    SceneMeshes meshes;
    for (OccurrenceWalk walk(scene, OccurrenceWalk::Mode::kVisible); walk.Next();)
    {
        std::string path;
        for (std::string_view const id : walk.Path())
            path += "/" + std::string(id);
        if (auto const box = SceneBox::Of(walk, meshes))
            boxes.emplace_back(path, *box);
    }
    return boxes;
}

std::string PointAt(std::string const& id, std::string const& coordinates, std::string const& more = {})
{
    std::string const shown = more.empty() ? R"(Visibility="1")" : more;
    return "<IPoint ID=\"" + id + "\" " + shown + "><Point " + coordinates + "/></IPoint>";
}

}  // namespace

TEST(SceneBox, GrowsAroundPoints)
{
    SceneBox const one = SceneBox::Around(std::nullopt, {1, 2, 3});
    EXPECT_THAT(one.low, ElementsAre(1, 2, 3));
    EXPECT_THAT(one.high, ElementsAre(1, 2, 3));
    SceneBox const two = SceneBox::Around(one, {0, 5, 3});
    EXPECT_THAT(two.low, ElementsAre(0, 2, 3));
    EXPECT_THAT(two.high, ElementsAre(1, 5, 3));
}

TEST(SceneBox, IsThatOfWhatAnOccurrenceShowsWhereItStands)
{
    ModelScene const scene(File({"top"}) + Assembly("top", MovedInstance("i", "p", 10) + HiddenInstance("h", "p")) +
                           Part("p", PointAt("a", R"(X="1" Y="2" Z="3")") + PointAt("b", R"(X="-1" Y="0" Z="4")")));
    auto const boxes = BoxesOf(scene.Model());
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].first, "/top/i");
    EXPECT_THAT(boxes[0].second.low, ElementsAre(9, 0, 3));
    EXPECT_THAT(boxes[0].second.high, ElementsAre(11, 2, 4));
}

TEST(SceneBox, IsInTheScenesUnit)
{
    ModelScene const scene(File({"p"}) +
                           Part("p", PointAt("a", R"(X="1" Y="2" Z="3")"), R"(<Unit LengthUnit="kUnitType_Inch"/>)"));
    auto const boxes = BoxesOf(scene.Model());
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_DOUBLE_EQ(boxes[0].second.low[0] * scene.Model().MetresPerUnit(), 0.0254);
}

TEST(SceneBox, AMeshCountsAndHiddenGeometryDoesNot)
{
    ModelScene const scene(File({"p"}) + Part("p", "<IPolygonMesh ID=\"m\" Visibility=\"1\"/>" +
                                                       PointAt("a", R"(X="900" Y="0" Z="0")", R"(Visibility="0")")),
                           {}, {"m"});
    SceneMeshes meshes;
    SceneGeometry const& mesh = scene.Geometry("p", "m");
    auto const own = SceneBox::Of(mesh, kIdentity, meshes);
    ASSERT_TRUE(own);
    auto const boxes = BoxesOf(scene.Model());
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].second.low, own->low);
    EXPECT_EQ(boxes[0].second.high, own->high);
    EXPECT_LT(own->high[0], 900);
    Matrix const twice = Scaling(2.0);
    EXPECT_EQ(SceneBox::Of(mesh, twice, meshes)->high[0], 2.0 * own->high[0]);
}

TEST(SceneBox, NothingHasNone)
{
    ModelScene const scene(File({"p"}) + Part("p"));
    EXPECT_TRUE(BoxesOf(scene.Model()).empty());
}

}  // namespace KVR::Test
