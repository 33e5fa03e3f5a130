#include "scene/SceneView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scene/SceneCamera.h"
#include "tests/host/OrganisationScene.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SceneView, HasWhatTheViewAnswers)
{
    TestScene scene(kOrganisationScene);
    auto& view = scene.Begin().Get<IView>("v1");
    SceneView const found = SceneView::Of(view);
    EXPECT_EQ(Text(found.id), "v1");
    EXPECT_EQ(Text(found.label), "Front");
    EXPECT_TRUE(found.isVisible);
    EXPECT_TRUE(found.isActive);
    EXPECT_EQ(found.lengthUnit, kUnitType_Inch);
    EXPECT_EQ(found.members, 2U);
    EXPECT_EQ(found.hiddenMembers, 1U);
    EXPECT_THAT(Ids(found.cameras), ElementsAre("k1", "lost"));
}

TEST(SceneView, MembersHavePathVisibilityPlaceAndStyles)
{
    TestScene scene(kOrganisationScene);
    std::vector<SceneViewMember> const members = SceneView::MembersOf(scene.Begin().Get<IView>("v1"));
    ASSERT_EQ(members.size(), 2U);
    EXPECT_THAT(Ids(members[0].path), ElementsAre("i", "p"));
    EXPECT_TRUE(members[0].isVisible);
    EXPECT_EQ(members[0].transform.Elements()[3], 4.0);
    EXPECT_THAT(Ids(members[0].styles), ElementsAre("s2"));
    EXPECT_THAT(Ids(members[1].path), ElementsAre("i"));
    EXPECT_FALSE(members[1].isVisible);
    EXPECT_EQ(members[1].transform.Elements(), Matrix3d().Elements());
    EXPECT_THAT(Ids(members[1].styles), IsEmpty());
}

TEST(SceneView, OneThatSaysNothingIsHiddenWithoutUnitOrMembers)
{
    TestScene scene(kOrganisationScene);
    SceneView const found = SceneView::Of(scene.Begin().Get<IView>("v2"));
    EXPECT_FALSE(found.isVisible);
    EXPECT_FALSE(found.isActive);
    EXPECT_EQ(found.lengthUnit, std::nullopt);
    EXPECT_EQ(found.members, 0U);
    EXPECT_THAT(Ids(found.cameras), IsEmpty());
    EXPECT_THAT(SceneView::MembersOf(scene.Get<IView>("v2")), IsEmpty());
}

TEST(SceneCamera, HasWhatTheCameraStates)
{
    TestScene scene(kOrganisationScene);
    SceneCamera const found = SceneCamera::Of(scene.Begin().Get<ICamera>("k1"));
    EXPECT_EQ(Text(found.id), "k1");
    EXPECT_EQ(Text(found.label), "Eye");
    EXPECT_FALSE(found.isSectionCamera);
    EXPECT_EQ(found.type, ICamera::kCameraType_Perspective);
    EXPECT_EQ(found.lengthUnit, kUnitType_Millimeter);
    EXPECT_EQ(found.position.Z(), -3.0);
    EXPECT_EQ(found.direction[2], 1.0);
    EXPECT_EQ(found.upDirection[1], 1.0);
    EXPECT_EQ(found.viewAngle, 0.5);
    EXPECT_EQ(found.distanceToViewPlane, std::nullopt);
    EXPECT_EQ(found.aspectRatio, std::nullopt);
    EXPECT_EQ(found.windowHeight, std::nullopt);
    ASSERT_TRUE(found.nearPlane);
    EXPECT_EQ(found.nearPlane->Origin().X(), 1.0);
    EXPECT_FALSE(found.farPlane);
    EXPECT_THAT(found.sectionPlanes, IsEmpty());
}

TEST(SceneCamera, ASectionCameraHasItsPlanes)
{
    TestScene scene(kOrganisationScene);
    SceneCamera const found = SceneCamera::Of(scene.Begin().Get<ICamera>("k2"));
    EXPECT_TRUE(found.isSectionCamera);
    EXPECT_EQ(found.type, ICamera::kCameraType_Parallel);
    EXPECT_EQ(found.viewAngle, std::nullopt);
    ASSERT_EQ(found.sectionPlanes.size(), 2U);
    EXPECT_EQ(found.sectionPlanes[0].Origin().X(), 7.0);
    EXPECT_EQ(found.sectionPlanes[0].Normal()[0], 1.0);
    EXPECT_EQ(Text(found.sectioningOperations), "AND");
}

}  // namespace KVR::Test
