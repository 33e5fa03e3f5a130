#include "organisation/XMLCamera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producer/ElementReaders.h"
#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"
#include "tests/support/ResidentMemory.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A camera "k" with the attributes and content.
class CameraScene : public SetScene
{
public:
    explicit CameraScene(std::string const& attributes, std::string const& content = "")
        : SetScene("<CameraSet><ICamera ID='k' Label='L' " + attributes + ">" + content + "</ICamera></CameraSet>")
    {
    }
    ICamera& operator*() { return Get<ICamera>("k"); }
    ICamera* operator->() { return &**this; }
};

std::array<double, 3> ComponentsOf(Position const& position)
{
    return {position.X(), position.Y(), position.Z()};
}
using Test::ComponentsOf;

constexpr char kPlane[] = "<PlaneData><Origin X='1' Y='2' Z='3'/><Normal X='0' Y='0' Z='1'/></PlaneData>";

}  // namespace

TEST(XMLCamera, WithoutOptionalAttributesSevenAnswersAreNotSpecified)
{
    CameraScene camera("Type='kCameraType_Parallel'");
    EXPECT_EQ(AnswerOf(*camera, &ICamera::DistanceToViewPlane), std::nullopt);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::AspectRatio), std::nullopt);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewAngle), std::nullopt);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewWindowHeightForParallelCamera), std::nullopt);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::IsDepthFieldDefined), std::nullopt);
    EXPECT_FALSE(AnswerOf(*camera, &ICamera::NearPlane));
    EXPECT_FALSE(AnswerOf(*camera, &ICamera::FarPlane));
    EXPECT_EQ(AnswerOf(*camera, &ICamera::LengthUnit), kUnitType_Unknown);
    EXPECT_THAT(ComponentsOf(camera->CameraPosition()), ElementsAre(0, 0, 0));
    EXPECT_THAT(ComponentsOf(camera->CameraDirection()), ElementsAre(0, 0, 0));
    EXPECT_THAT(ComponentsOf(camera->CameraUpDirection()), ElementsAre(0, 0, 0));
    EXPECT_TRUE(camera->PropertyIds().IsEmpty());
    EXPECT_FALSE(camera->IsThreadSafe());
}

TEST(XMLCamera, WhatIsNotSpecifiedLeavesTheOutputAlone)
{
    CameraScene camera("");
    double angle = 7.0;
    EXPECT_EQ(camera->ViewAngle(angle), kIsValueSpecified_No);
    EXPECT_EQ(angle, 7.0);
}

TEST(XMLCamera, EveryAttributeIsRead)
{
    CameraScene camera(
        "VersionPersistentId='v' Type='kCameraType_Perspective' DistanceToViewPlane='10.5' AspectRatio='1.5' "
        "ViewAngle='0.75' ViewWindowHeightForParallelCamera='200' IsDepthFieldDefined='1'");
    EXPECT_EQ(Text(camera->Label()), "L");
    EXPECT_EQ(TextOf(*camera, &ICamera::VersionPersistentId), "v");
    EXPECT_EQ(camera->CameraType(), ICamera::kCameraType_Perspective);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::DistanceToViewPlane), 10.5);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::AspectRatio), 1.5);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewAngle), 0.75);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewWindowHeightForParallelCamera), 200.0);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::IsDepthFieldDefined), true);
    EXPECT_THAT(Ids(camera.Owner().CameraSet()), ElementsAre("k"));
}

TEST(XMLCamera, EveryChildIsRead)
{
    CameraScene camera("",
                       "<Unit LengthUnit='kUnitType_Meter'/><CameraPosition X='1' Y='2' Z='3'/>"
                       "<CameraDirection X='0' Y='0' Z='-2'/><CameraUpDirection X='0' Y='1' Z='0'/>" +
                           std::string("<NearPlane>") + kPlane + "</NearPlane><FarPlane>" + kPlane + "</FarPlane>");
    EXPECT_EQ(AnswerOf(*camera, &ICamera::LengthUnit), kUnitType_Meter);
    EXPECT_THAT(ComponentsOf(camera->CameraPosition()), ElementsAre(1, 2, 3));
    EXPECT_THAT(ComponentsOf(camera->CameraDirection()), ElementsAre(0, 0, -2));
    EXPECT_THAT(ComponentsOf(camera->CameraUpDirection()), ElementsAre(0, 1, 0));
    ASSERT_TRUE(AnswerOf(*camera, &ICamera::NearPlane));
    EXPECT_THAT(ComponentsOf(AnswerOf(*camera, &ICamera::NearPlane)->Origin()), ElementsAre(1, 2, 3));
    ASSERT_TRUE(AnswerOf(*camera, &ICamera::FarPlane));
    EXPECT_THAT(ComponentsOf(AnswerOf(*camera, &ICamera::FarPlane)->Normal()), ElementsAre(0, 0, 1));
}

TEST(XMLCamera, IsParallelAlsoWithoutAKnownType)
{
    for (char const* const text :
         {"Type='kCameraType_Parallel'", "Type='Perspective'", "Type='kcameratype_perspective'", "Type=''", ""})
        EXPECT_EQ(CameraScene(text)->CameraType(), ICamera::kCameraType_Parallel) << text;
}

TEST(XMLCamera, ATextThatDoesNotConvertIsSpecifiedAllTheSame)
{
    CameraScene camera("DistanceToViewPlane='far' ViewAngle='' IsDepthFieldDefined='yes'");
    EXPECT_EQ(AnswerOf(*camera, &ICamera::DistanceToViewPlane), 0.0);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::ViewAngle), 0.0);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::IsDepthFieldDefined), false);
    EXPECT_EQ(AnswerOf(*camera, &ICamera::AspectRatio), std::nullopt);
}

TEST(XMLCamera, ADepthFieldOfZeroIsSpecifiedAndFalse)
{
    EXPECT_EQ(AnswerOf(*CameraScene("IsDepthFieldDefined='0'"), &ICamera::IsDepthFieldDefined), false);
    EXPECT_EQ(AnswerOf(*CameraScene("IsDepthFieldDefined='2'"), &ICamera::IsDepthFieldDefined), true);
    EXPECT_EQ(AnswerOf(*CameraScene("IsDepthFieldDefined='-1'"), &ICamera::IsDepthFieldDefined), true);
    EXPECT_EQ(AnswerOf(*CameraScene("IsDepthFieldDefined='true'"), &ICamera::IsDepthFieldDefined), false);
}

TEST(XMLCamera, ANearPlaneWithoutPlaneDataIsNotSpecified)
{
    CameraScene camera("", "<NearPlane/><FarPlane><Plane/></FarPlane>");
    EXPECT_FALSE(AnswerOf(*camera, &ICamera::NearPlane));
    EXPECT_FALSE(AnswerOf(*camera, &ICamera::FarPlane));
}

TEST(XMLCamera, OfTwoPlanesTheLastCounts)
{
    CameraScene camera("", std::string("<NearPlane>") + kPlane + "<PlaneData><Origin X='9'/></PlaneData></NearPlane>");
    EXPECT_THAT(ComponentsOf(AnswerOf(*camera, &ICamera::NearPlane)->Origin()), ElementsAre(9, 0, 0));
}

TEST(XMLCamera, AnEmptyPlaneIsSpecifiedAndHasTheDefaults)
{
    CameraScene camera("", "<FarPlane><PlaneData/></FarPlane>");
    ASSERT_TRUE(AnswerOf(*camera, &ICamera::FarPlane));
    EXPECT_THAT(ComponentsOf(AnswerOf(*camera, &ICamera::FarPlane)->Normal()), ElementsAre(0, 0, 0));
}

TEST(XMLCamera, AMissingOrBadCoordinateIsZero)
{
    CameraScene camera("", "<CameraPosition X='1' Z='here'/><CameraDirection/>");
    EXPECT_THAT(ComponentsOf(camera->CameraPosition()), ElementsAre(1, 0, 0));
    EXPECT_THAT(ComponentsOf(camera->CameraDirection()), ElementsAre(0, 0, 0));
}

TEST(XMLCamera, OfItsUnitTheLengthAloneIsReadAndABadTextLeavesItUnknown)
{
    EXPECT_EQ(AnswerOf(*CameraScene("", "<Unit DisplayLengthUnit='kUnitType_Inch'/>"), &ICamera::LengthUnit),
              kUnitType_Unknown);
    EXPECT_EQ(AnswerOf(*CameraScene("", "<Unit LengthUnit='inch'/>"), &ICamera::LengthUnit), kUnitType_Unknown);
}

TEST(XMLCamera, ItKeepsNeitherExtensionDataNorChangeKey)
{
    CameraScene camera("", "<ExtensionData TypeId='t' Content='c'/><ChangeKey>k</ChangeKey>");
    EXPECT_FALSE(ExtensionOf(*camera, "t"));
    EXPECT_EQ(ChangeKeyOf(*camera), std::nullopt);
}

TEST(XMLCamera, AnElementOfAnyNameIsACamera)
{
    SetScene scene("<CameraSet>text<Eye ID='k' Label='E'/><!-- c --><?ICamera ID='p'?></CameraSet>");
    EXPECT_EQ(Text(scene.Get<ICamera>("k").Label()), "E");
    EXPECT_THAT(Ids(scene.Owner().CameraSet()), ElementsAre("k"));
}

TEST(XMLCamera, WithoutAnyAttributeItHasTheEmptyId)
{
    SetScene scene("<CameraSet><ICamera/></CameraSet>");
    EXPECT_EQ(Text(scene.Get<ICamera>("").Label()), "");
}

TEST(XMLCamera, OfTwoWithOneIdTheFirstIsTheOnlyOne)
{
    SetScene scene("<CameraSet><ICamera ID='k' Label='1'/><ICamera ID='k' Label='2'/></CameraSet>");
    EXPECT_EQ(Text(scene.Get<ICamera>("k").Label()), "1");
    EXPECT_THAT(Ids(scene.Owner().CameraSet()), ElementsAre("k"));
}

TEST(XMLCamera, AnOwnerWhoseSetRepeatsAKnownOneListsIt)
{
    TestScene scene(
        InScene("<IPart ID='p1'><AttributeSet><CameraSet><ICamera ID='k'/></CameraSet></AttributeSet></IPart>"
                "<IPart ID='p2'><AttributeSet><CameraSet><ICamera ID='k'/></CameraSet></AttributeSet></IPart>"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IPart>("p2").CameraSet()), ElementsAre("k"));
}

TEST(XMLCamera, UnderAPrefixItsIdIsMapped)
{
    SetScene scene("<CameraSet><ICamera ID='k' Label=''/></CameraSet>", "n");
    EXPECT_EQ(Text(scene.Get<ICamera>("n5").Id()), "n5");
    EXPECT_FALSE(scene.Has("k"));
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").CameraSet()), ElementsAre("n5"));
}

TEST(XMLCamera, ARepeatedIdIsToldTwiceAndMakesOneObject)
{
    ReadElement reading;
    std::vector<UTF8String> ids;
    ASSERT_TRUE(
        ReadCameraSet(&reading.Producer(), reading.Parse("<CameraSet><ICamera ID='k' Label='1'/></CameraSet>"), ids));
    IObject const* const first = reading.Producer().Load("k");
    ASSERT_TRUE(ReadCameraSet(&reading.Producer(),
                              reading.Parse("<CameraSet><ICamera ID='k' Label='2'/><ICamera ID='j'/>"
                                            "<ICamera ID='k' Label='3'><ISectionCamera> </ISectionCamera></ICamera>"
                                            "</CameraSet>"),
                              ids));
    EXPECT_THAT(Texts(ids), ElementsAre("k", "k", "j", "k"));
    EXPECT_EQ(reading.Producer().Load("k"), first);
    EXPECT_EQ(Text(first->Label()), "1");
}

// Objects that nobody is served would show in the memory: a camera takes more than half a kB.
TEST(XMLCamera, ManyOfOneIdMakeNoMoreThanOneObject)
{
    constexpr unsigned kMany = 100'000;
    std::string set = "<CameraSet>";
    for (unsigned i = 0; i < kMany; ++i)
        set += "<ICamera ID='k'/>";
    ReadElement reading;
    xercesc::DOMNode* const node = reading.Parse(set + "</CameraSet>");
    std::vector<UTF8String> ids;
    ids.reserve(kMany);
    long const before = ResidentMemoryKB();
    ASSERT_TRUE(ReadCameraSet(&reading.Producer(), node, ids));
    EXPECT_EQ(ids.size(), kMany);
    EXPECT_LT(ResidentMemoryKB(), before + 20 * 1024);
}

TEST(XMLCamera, ANullSetIsRefused)
{
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadCameraSet(nullptr, nullptr, ids));
}

}  // namespace KVR::Test
