#include "geometry/XMLPoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

struct PointElement
{
    explicit PointElement(std::string const& children, std::string const& attributes = "")
        : scene(InScene("<IPoint ID='p' " + attributes + ">" + children + "</IPoint>")),
          point(scene.Begin().Get<IPoint>("p"))
    {
    }
    std::array<double, 3> Position() const { return {point.X(), point.Y(), point.Z()}; }

    TestScene scene;
    IPoint& point;
};

}  // namespace

TEST(XMLPoint, StandsWhereItsPointElementSays)
{
    EXPECT_EQ(PointElement("<Point X='1.5' Y='-2' Z='3e2'/>").Position(), (std::array<double, 3>{1.5, -2, 300}));
}

TEST(XMLPoint, WithoutAPointElementItIsAtTheOrigin)
{
    EXPECT_EQ(PointElement("<point X='1' Y='2' Z='3'/>").Position(), (std::array<double, 3>{0, 0, 0}));
}

TEST(XMLPoint, ACoordinateThatIsMissingOrNoNumberKeepsItsValue)
{
    EXPECT_EQ(PointElement("<Point X='1' Y='two'/>").Position(), (std::array<double, 3>{1, 0, 0}));
    EXPECT_EQ(PointElement("<Point X='1' Y='2' Z='3'/><Point X='' z='9' Y='5'/>").Position(),
              (std::array<double, 3>{1, 5, 3}));
}

TEST(XMLPoint, ALaterPointElementOverwritesAnEarlierOne)
{
    EXPECT_EQ(PointElement("<Point X='1' Y='2' Z='3'/><Point X='4' Y='5' Z='6'/>").Position(),
              (std::array<double, 3>{4, 5, 6}));
}

TEST(XMLPoint, AttributesAndElementsAreRead)
{
    PointElement const test(
        "<ChangeKey>k</ChangeKey><Styles><StyleRef ID='s'/></Styles><NetStyles><StyleRef ID='n'/></NetStyles>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(test.point.Label()), "L");
    EXPECT_EQ(TextOf(test.point, &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ChangeKeyOf(test.point), "k");
    EXPECT_THAT(Ids(test.point.Styles()), ElementsAre("s"));
    EXPECT_THAT(Ids(test.point.NetStyles()), ElementsAre("n"));
}

TEST(XMLPoint, WithoutThemNothingIsSpecified)
{
    PointElement const test("");
    EXPECT_EQ(TextOf(test.point, &IObject::VersionPersistentId), std::nullopt);
    EXPECT_EQ(ChangeKeyOf(test.point), std::nullopt);
    EXPECT_TRUE(test.point.Styles().IsEmpty());
    EXPECT_TRUE(test.point.NetStyles().IsEmpty());
    EXPECT_TRUE(test.point.PropertyIds().IsEmpty());
    EXPECT_EQ(test.point.Transform(), nullptr);
    EXPECT_FALSE(test.point.IsThreadSafe());
}

TEST(XMLPoint, LengthUnitsAreAnsweredAndTheDisplayAngleUnitNever)
{
    UnitAnswers const units =
        UnitsOf(PointElement("<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
                             "DisplayLengthUnit='kUnitType_Foot'/>")
                    .point);
    EXPECT_EQ(units, (UnitAnswers{kUnitType_Inch, std::nullopt, kUnitType_Foot}));
    EXPECT_EQ(UnitsOf(PointElement("<unit LengthUnit='kUnitType_Inch'/>").point),
              (UnitAnswers{kUnitType_Unknown, std::nullopt, kUnitType_Unknown}));
}

TEST(XMLPoint, StylesInAnotherCaseMatchAndReadNothing)
{
    PointElement const test("<STYLES><StyleRef ID='s'/></STYLES><netstyles><StyleRef ID='s'/></netstyles>");
    EXPECT_TRUE(test.point.Styles().IsEmpty());
    EXPECT_TRUE(test.point.NetStyles().IsEmpty());
}

TEST(XMLPoint, EveryExtensionDataIsAddedAlsoWithoutATypeId)
{
    PointElement const test(
        "<ExtensionData TypeId='a' Content='1'/><ExtensionData Content='2'/><ExtensionData TypeId='a' Content='3'/>");
    EXPECT_EQ(ExtensionTextOf(test.point, "a"), "1");
    EXPECT_EQ(ExtensionTextOf(test.point, ""), "2");
    EXPECT_EQ(ExtensionTextOf(test.point, "b"), std::nullopt);
}

TEST(XMLPoint, AnIdentityTransformTakesAnEarlierOneAway)
{
    PointElement const moved("<Transform>" + MoveText(7) + "</Transform>");
    ASSERT_NE(moved.point.Transform(), nullptr);
    EXPECT_EQ(moved.point.Transform()->Element(0, 3), 7.0);
    EXPECT_EQ(PointElement("<Transform>" + MoveText(7) + "</Transform><Transform>" + MoveText(0) + "</Transform>")
                  .point.Transform(),
              nullptr);
}

TEST(XMLPoint, SetTransformKeepsACopyAndNothingForTheIdentity)
{
    PointElement const test("");
    Matrix3d move;
    move.SetElement(1, 3, 2.0);
    test.point.SetTransform(move);
    ASSERT_NE(test.point.Transform(), nullptr);
    EXPECT_EQ(test.point.Transform()->Elements(), move.Elements());
    EXPECT_NE(test.point.Transform(), &move);
    test.point.SetTransform(Matrix3d());
    EXPECT_EQ(test.point.Transform(), nullptr);
}

TEST(XMLPoint, TolerancesAndTheAnswersThatAreNeverSpecifiedAreConstant)
{
    PointElement const test("<Tolerance AngularTolerance='1' LinearTolerance='2' ParamTolerance='3'/>");
    EXPECT_EQ(test.point.AngularTolerance(), -1.0);
    EXPECT_EQ(test.point.LinearTolerance(), -1.0);
    EXPECT_EQ(test.point.ParamTolerance(), -1.0);
    EXPECT_EQ(AnswerOf(test.point, &IPoint::PointSize), std::nullopt);
    Color color;
    EXPECT_EQ(test.point.PointColor(color), kIsValueSpecified_No);
    EXPECT_EQ(Text(test.point.MarkerStyleId()), "");
}

TEST(XMLPoint, ANullNodeFails)
{
    ReadElement reading;
    XMLPoint point(&reading.Producer());
    EXPECT_FALSE(point.ReadFromXML(nullptr));
}

TEST(XMLPoint, ItsIdAndItsStylesAreMapped)
{
    TestScene scene(InScene("<IPoint ID='p'><Styles><StyleRef ID='s'/></Styles></IPoint>"));
    scene.WithPrefix("n").Begin();
    EXPECT_THAT(Ids(scene.Get<IPoint>("n1").Styles()), ElementsAre("n2"));
    EXPECT_FALSE(scene.Has("p"));
}

TEST(XMLPoint, AVisitorMeetsAPoint)
{
    class Visitor : public ObjectVisitor
    {
    public:
        using ObjectVisitor::Visit;
        void Visit(IPoint* point) override { met = point; }
        IPoint* met = nullptr;
    };
    PointElement const test("");
    Visitor visitor;
    test.point.AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.met, &test.point);
}

}  // namespace KVR::Test
