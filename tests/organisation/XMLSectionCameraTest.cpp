#include "organisation/XMLSectionCamera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

// A camera "k" with attributes and content of which some may make a section camera of it.
class SectionScene : public SetScene
{
public:
    explicit SectionScene(std::string const& content, std::string const& attributes = "")
        : SetScene("<CameraSet><ICamera ID='k' Label='L' " + attributes + ">" + content + "</ICamera></CameraSet>")
    {
    }
    bool IsSectionCamera() { return dynamic_cast<ISectionCamera*>(&Get<ICamera>("k")) != nullptr; }
    ISectionCamera& operator*() { return Get<ISectionCamera>("k"); }
    ISectionCamera* operator->() { return &**this; }

    std::vector<double> PlaneOrigins()
    {
        std::vector<double> origins;
        for (unsigned long long i = 0; i < (*this)->SectionPlaneCount(); ++i)
            origins.push_back((*this)->SectionPlaneAt(i).Origin().X());
        return origins;
    }
};

std::string PlaneAt(int x)
{
    return "<PlaneData><Origin X='" + std::to_string(x) + "' Y='0' Z='0'/><Normal X='1' Y='0' Z='0'/></PlaneData>";
}

std::string Section(std::string const& content)
{
    return "<ISectionCamera>" + content + "</ISectionCamera>";
}

class VisitedCamera : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;
    void Visit(ICamera* object) override { camera = object; }
    ICamera* camera = nullptr;
};

}  // namespace

TEST(XMLSectionCamera, OnePlaneMakesOne)
{
    SectionScene camera(Section(PlaneAt(5)));
    EXPECT_EQ(camera->SectionPlaneCount(), 1U);
    EXPECT_THAT(camera.PlaneOrigins(), ElementsAre(5));
    EXPECT_THAT(ComponentsOf(camera->SectionPlaneAt(0).Normal()), ElementsAre(1, 0, 0));
    EXPECT_EQ(Text(camera->SectioningOperations()), "");
    EXPECT_EQ(Text(camera->Id()), "k");
    EXPECT_EQ(Text(camera->Label()), "L");
    EXPECT_FALSE(camera->IsThreadSafe());
    EXPECT_TRUE(camera->PropertyIds().IsEmpty());
    EXPECT_THAT(Ids(camera.Owner().CameraSet()), ElementsAre("k"));
}

TEST(XMLSectionCamera, ItAnswersEveryQuestionOfACameraAsBefore)
{
    SectionScene camera("<Unit LengthUnit='kUnitType_Meter'/><CameraPosition X='1' Y='2' Z='3'/>" +
                            Section(PlaneAt(1)) +
                            "<CameraDirection X='0' Y='0' Z='1'/><CameraUpDirection X='0' Y='1' Z='0'/><NearPlane>" +
                            PlaneAt(6) + "</NearPlane><FarPlane>" + PlaneAt(7) + "</FarPlane>",
                        "Type='kCameraType_Perspective' DistanceToViewPlane='1' AspectRatio='2' ViewAngle='3' "
                        "ViewWindowHeightForParallelCamera='4' IsDepthFieldDefined='1'");
    EXPECT_EQ(camera->CameraType(), ICamera::kCameraType_Perspective);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::LengthUnit), kUnitType_Meter);
    EXPECT_EQ(camera->CameraPosition().Z(), 3);
    EXPECT_THAT(ComponentsOf(camera->CameraDirection()), ElementsAre(0, 0, 1));
    EXPECT_THAT(ComponentsOf(camera->CameraUpDirection()), ElementsAre(0, 1, 0));
    EXPECT_EQ(AnswerOf(*camera, &ICamera::DistanceToViewPlane), 1);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::AspectRatio), 2);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewAngle), 3);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewWindowHeightForParallelCamera), 4);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::IsDepthFieldDefined), true);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::NearPlane)->Origin().X(), 6);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::FarPlane)->Origin().X(), 7);
}

TEST(XMLSectionCamera, WhatTheCameraLacksItLacks)
{
    SectionScene camera(Section(PlaneAt(1)));
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewAngle), std::nullopt);
    EXPECT_FALSE(AnswerOf(*camera, &ICamera::NearPlane));
    EXPECT_EQ(AnswerOf(*camera, &ICamera::LengthUnit), kUnitType_Unknown);
}

TEST(XMLSectionCamera, ABadPlaneIndexIsOutOfRange)
{
    SectionScene camera(Section(PlaneAt(1)));
    EXPECT_THAT([&] { camera->SectionPlaneAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLSectionCamera, SeveralElementsFeedOneInTheirOrder)
{
    SectionScene camera(Section(PlaneAt(1) + PlaneAt(2)) + Section("<SectioningOperations>AND</SectioningOperations>") +
                        Section(PlaneAt(3)));
    EXPECT_THAT(camera.PlaneOrigins(), ElementsAre(1, 2, 3));
    EXPECT_EQ(Text(camera->SectioningOperations()), "AND");
}

TEST(XMLSectionCamera, WhiteSpaceAloneMakesOneWithoutPlanes)
{
    SectionScene camera(Section(" \n "));
    ASSERT_TRUE(camera.IsSectionCamera());
    EXPECT_EQ(camera->SectionPlaneCount(), 0U);
    EXPECT_THAT([&] { camera->SectionPlaneAt(0); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLSectionCamera, ACommentOrAnUnknownElementAloneMakesOneToo)
{
    EXPECT_TRUE(SectionScene(Section("<!-- c -->")).IsSectionCamera());
    EXPECT_TRUE(SectionScene(Section("<Other/>")).IsSectionCamera());
}

TEST(XMLSectionCamera, AnEmptyElementMakesNone)
{
    EXPECT_FALSE(SectionScene("<ISectionCamera/>").IsSectionCamera());
    EXPECT_FALSE(SectionScene(Section("")).IsSectionCamera());
}

TEST(XMLSectionCamera, EmptyOperationsLeaveTheFormerOnes)
{
    SectionScene camera(
        Section("<SectioningOperations>OR</SectioningOperations><SectioningOperations></SectioningOperations>"));
    EXPECT_EQ(Text(camera->SectioningOperations()), "OR");
}

TEST(XMLSectionCamera, OfTwoOperationsTheLastCounts)
{
    SectionScene camera(
        Section("<SectioningOperations>OR</SectioningOperations><SectioningOperations>AND</SectioningOperations>"));
    EXPECT_EQ(Text(camera->SectioningOperations()), "AND");
}

TEST(XMLSectionCamera, ThePersistentIdStaysWithTheCameraInside)
{
    EXPECT_EQ(TextOf(*SectionScene(Section(PlaneAt(1)), "VersionPersistentId='v'"), &ICamera::VersionPersistentId),
              std::nullopt);
}

TEST(XMLSectionCamera, AVisitorMeetsItAsACamera)
{
    SectionScene camera(Section(PlaneAt(1)));
    VisitedCamera visitor;
    camera->AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.camera, &*camera);
}

TEST(XMLSectionCamera, EverySetterWritesIntoTheCameraInside)
{
    auto inside = std::make_unique<XMLCamera>("k", Wide("inside"));
    XMLCamera const& held = *inside;
    XMLSectionCamera camera("k", Wide("L"), std::move(inside));
    camera.SetCameraType(ICamera::kCameraType_Perspective);
    camera.SetLengthUnit(kUnitType_Inch);
    camera.SetCameraPosition(Position(1, 2, 3));
    camera.SetCameraDirection(UnitVector(4, 5, 6));
    camera.SetCameraUpDirection(UnitVector(7, 8, 9));
    camera.SetDistanceToViewPlane(10);
    camera.SetAspectRatio(11);
    camera.SetViewAngle(12);
    camera.SetViewWindowHeightForParallelCamera(13);
    camera.SetIsDepthFieldDefined(true);
    camera.SetNearPlane(Plane(Position(14, 0, 0), UnitVector(1, 0, 0)));
    camera.SetFarPlane(Plane(Position(15, 0, 0), UnitVector(1, 0, 0)));
    EXPECT_EQ(AnswerOf(held, &ICamera::ViewAngle), std::nullopt) << "a value alone specifies nothing";
    camera.SetDistanceToViewPlaneSpecified(true);
    camera.SetAspectRatioSpecified(true);
    camera.SetViewAngleSpecified(true);
    camera.SetViewWindowHeightForParallelCameraSpecified(true);
    camera.SetIsDepthFieldDefinedSpecified(true);
    camera.SetNearPlaneSpecified(true);
    camera.SetFarPlaneSpecified(true);
    EXPECT_EQ(held.CameraType(), ICamera::kCameraType_Perspective);
    EXPECT_EQ(AnswerOf(held, &ICamera::LengthUnit), kUnitType_Inch);
    EXPECT_EQ(held.CameraPosition().Y(), 2);
    EXPECT_THAT(ComponentsOf(held.CameraDirection()), ElementsAre(4, 5, 6));
    EXPECT_THAT(ComponentsOf(held.CameraUpDirection()), ElementsAre(7, 8, 9));
    EXPECT_EQ(AnswerOf(held, &ICamera::DistanceToViewPlane), 10);
    EXPECT_EQ(AnswerOf(held, &ICamera::AspectRatio), 11);
    EXPECT_EQ(AnswerOf(held, &ICamera::ViewAngle), 12);
    EXPECT_EQ(AnswerOf(held, &ICamera::ViewWindowHeightForParallelCamera), 13);
    EXPECT_EQ(AnswerOf(held, &ICamera::IsDepthFieldDefined), true);
    EXPECT_EQ(AnswerOf(held, &ICamera::NearPlane)->Origin().X(), 14);
    EXPECT_EQ(AnswerOf(held, &ICamera::FarPlane)->Origin().X(), 15);
    camera.SetFarPlaneSpecified(false);
    EXPECT_FALSE(AnswerOf(camera, &ICamera::FarPlane));
}

}  // namespace KVR::Test
