#include "scene/ScenePoints.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ScenePoints, ACloudIsAFlatArrayWithItsUnit)
{
    TestScene scene(R"(<S><IPart ID="p" Label=""><ChildSet><IPointCloud ID="c"><Unit LengthUnit="kUnitType_Inch"/>
        <PointCloud PointCloudCoordinates="0 0.5 -1 1e3 2 3 1e300 0 0"/></IPointCloud><IPointCloud ID="none"/></ChildSet>
        </IPart></S>)");
    ScenePoints const found = ScenePoints::Of(scene.Begin().Get<IPointCloud>("c"));
    EXPECT_THAT(found.points, ElementsAre(0, 0.5, -1, 1000, 2, 3));
    EXPECT_EQ(found.Count(), 2U);
    // The one that fits no float.
    EXPECT_EQ(found.broken, 1U);
    EXPECT_EQ(found.lengthUnit, kUnitType_Inch);
    ScenePoints const none = ScenePoints::Of(scene.Get<IPointCloud>("none"));
    EXPECT_THAT(none.points, IsEmpty());
    EXPECT_EQ(none.broken, 0U);
}

TEST(ScenePoints, APointIsOne)
{
    TestScene scene(
        R"(<S><IPart ID="p" Label=""><ChildSet><IPoint ID="a"><Point X="1" Y="2" Z="3"/></IPoint></ChildSet></IPart></S>)");
    IPoint const& point = scene.Begin().Get<IPoint>("a");
    ScenePoints const found = ScenePoints::Of(point);
    EXPECT_THAT(found.points, ElementsAre(1, 2, 3));
    EXPECT_EQ(found.broken, 0U);
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(found.lengthUnit.has_value(), point.LengthUnit(unit) == kIsValueSpecified_Yes);
}

}  // namespace KVR::Test
