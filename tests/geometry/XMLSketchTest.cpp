#include "geometry/XMLSketch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/structure/Answers.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

struct SketchElement
{
    explicit SketchElement(std::string const& children, std::string const& attributes = "")
        : scene(
              InScene("<ISketch ID='s' SketchTypeEnum='kSketchType_2D' " + attributes + ">" + children + "</ISketch>")),
          sketch(scene.Begin().Get<ISketch>("s"))
    {
    }
    TestScene scene;
    ISketch& sketch;
};

// A sketch of the given numbers of curves and points: c0, c1, ..., p0, p1, ...
class SketchOf : public testing::Test
{
protected:
    XMLSketch const& Read(int curves, int points)
    {
        m_reading.AddKernelEntry("edge");
        std::string xml = "<ISketch SketchTypeEnum='kSketchType_3D'><CurveSet>";
        for (int i = 0; i < curves; ++i)
            xml += "<ICurve ID='c" + std::to_string(i) + "'/>";
        xml += "</CurveSet><ChildSet>";
        for (int i = 0; i < points; ++i)
            xml += "<IPoint ID='p" + std::to_string(i) + "'/>";
        EXPECT_TRUE(
            m_sketch.ReadFromXML(m_reading.Parse(xml + "</ChildSet></ISketch>"), m_reading.Index().curveEntities));
        return m_sketch;
    }

    ReadElement m_reading;
    XMLSketch m_sketch{&m_reading.Producer()};
};

}  // namespace

TEST(XMLSketch, ItsTypeIsOneOfTwoTexts)
{
    TestScene scene(
        InScene("<ISketch ID='a' SketchTypeEnum='kSketchType_2D'/>"
                "<ISketch ID='b' SketchTypeEnum='kSketchType_3D'/>"));
    scene.Begin();
    EXPECT_EQ(scene.Get<ISketch>("a").SketchType(), ISketch::kSketchType_2D);
    EXPECT_EQ(scene.Get<ISketch>("b").SketchType(), ISketch::kSketchType_3D);
}

TEST(XMLSketch, OfNoKnownTypeItFailsAndWhatItDefinesStaysRegistered)
{
    for (char const* const type : {"", "SketchTypeEnum=''", "SketchTypeEnum='kSketchType_4D'",
                                   "SketchTypeEnum='KSKETCHTYPE_2D'", "sketchTypeEnum='kSketchType_2D'"})
    {
        TestScene scene(
            InScene(std::string("<ISketch ID='s' ") + type + "><ChildSet><IPoint ID='p'/></ChildSet></ISketch>"));
        scene.Begin();
        EXPECT_FALSE(scene.Has("s")) << type;
        EXPECT_TRUE(scene.Has("p")) << type;
    }
}

TEST(XMLSketch, WithoutVisibilityItIsHidden)
{
    SketchElement const hidden("");
    EXPECT_FALSE(hidden.sketch.IsVisible());
    EXPECT_FALSE(hidden.sketch.IsNetVisible());
    SketchElement const shown("", "Visibility='1' NetVisibility='1'");
    EXPECT_TRUE(shown.sketch.IsVisible());
    EXPECT_TRUE(shown.sketch.IsNetVisible());
}

TEST(XMLSketch, PointsAreReadFromChildSetsAndListedOnce)
{
    TestScene scene(InScene(
        "<IPoint ID='a'/><ISketch ID='s' SketchTypeEnum='kSketchType_2D'><ChildSet><Child ID='a'/><IPoint ID='b'/>"
        "<Child ID='nowhere'/><Child ID='b'/><Child/><ICurve ID='c'/></ChildSet><ChildSet><IPoint ID='d'/></ChildSet>"
        "</ISketch>"));
    ISketch const& sketch = scene.Begin().Get<ISketch>("s");
    EXPECT_THAT(Ids(sketch.PointIds()), ElementsAre("a", "b", "d"));
    EXPECT_THAT(Ids(sketch.CurveIds()), IsEmpty());
    EXPECT_EQ(sketch.ChildCount(), 3U);
    EXPECT_TRUE(scene.Has("d"));
}

TEST(XMLSketch, ACurveSetTakesReferencesAndNoPoints)
{
    TestScene scene(
        InScene("<IPoint ID='a'/><ISketch ID='s' SketchTypeEnum='kSketchType_2D'><CurveSet><Child ID='a'/>"
                "<IPoint ID='b'/><Child ID='nowhere'/></CurveSet></ISketch>"));
    ISketch const& sketch = scene.Begin().Get<ISketch>("s");
    EXPECT_THAT(Ids(sketch.CurveIds()), ElementsAre("a"));
    EXPECT_THAT(Ids(sketch.PointIds()), IsEmpty());
    EXPECT_FALSE(scene.Has("b"));
}

TEST(XMLSketch, ItsCurvesNeverComeFromABinaryStore)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    "<ISketch ID='s' SketchTypeEnum='kSketchType_2D'><CurveSet><ICurve ID='c'/></CurveSet></ISketch>"
                    "</Scene>");
    scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(2, "c") + VertexBytes(2)).Begin();
    EXPECT_THAT(Ids(scene.Get<ISketch>("s").CurveIds()), ElementsAre("c")) << "a curve of the kernel form";
    EXPECT_EQ(scene.Get<ICurve>("c").CurveDataAt(0), nullptr) << "not that of the store";
}

TEST_F(SketchOf, CurvesAreOfTheKernelForm)
{
    XMLSketch const& sketch = Read(2, 0);
    EXPECT_THAT(Ids(sketch.CurveIds()), ElementsAre("c0", "c1"));
    EXPECT_TRUE(m_reading.Has("c1"));
    EXPECT_EQ(sketch.SketchType(), ISketch::kSketchType_3D);
}

TEST_F(SketchOf, ChildIdAtAsksTheCurvesFirstAndThenThePointsByTheSameIndex)
{
    XMLSketch const& sketch = Read(2, 5);
    ASSERT_EQ(sketch.ChildCount(), 7U);
    EXPECT_EQ(Text(sketch.ChildIdAt(0)), "c0");
    EXPECT_EQ(Text(sketch.ChildIdAt(1)), "c1");
    EXPECT_THAT([&] { sketch.ChildIdAt(2); }, ThrowsMessage<std::out_of_range>(kBadIndex))
        << "the curves are asked, which have no third";
    EXPECT_EQ(Text(sketch.ChildIdAt(3)), "p3") << "the first points are not reached";
    EXPECT_EQ(Text(sketch.ChildIdAt(4)), "p4");
    EXPECT_THAT([&] { sketch.ChildIdAt(5); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { sketch.ChildIdAt(7); }, ThrowsMessage<std::out_of_range>(kBadIndex))
        << "the count itself passes the test";
    EXPECT_EQ(Text(sketch.ChildIdAt(8)), "");
    EXPECT_EQ(Text(sketch.ChildIdAt(~0ULL)), "");
}

TEST_F(SketchOf, ChildIdAtOfPointsAloneDoesNotReachTheFirst)
{
    XMLSketch const& sketch = Read(0, 2);
    EXPECT_THAT([&] { sketch.ChildIdAt(0); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_EQ(Text(sketch.ChildIdAt(1)), "p1");
    EXPECT_THAT([&] { sketch.ChildIdAt(2); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_EQ(Text(sketch.ChildIdAt(3)), "");
}

TEST_F(SketchOf, ANullNodeFails)
{
    EXPECT_FALSE(m_sketch.ReadFromXML(nullptr, m_reading.Index().curveEntities));
}

TEST(XMLSketch, AttributesAndElementsAreRead)
{
    SketchElement const test(
        "<ChangeKey>k</ChangeKey><Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
        "DisplayLengthUnit='kUnitType_Foot'/><ExtensionData TypeId='t' Content='c'/><Styles><StyleRef ID='s'/></Styles>"
        "<NetStyles><StyleRef ID='n'/></NetStyles>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(test.sketch.Label()), "L");
    EXPECT_EQ(TextOf(test.sketch, &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ChangeKeyOf(test.sketch), "k");
    EXPECT_EQ(UnitsOf(test.sketch), (UnitAnswers{kUnitType_Inch, kUnitType_Degree, kUnitType_Foot}));
    EXPECT_EQ(ExtensionTextOf(test.sketch, "t"), "c");
    EXPECT_THAT(Ids(test.sketch.Styles()), ElementsAre("s"));
    EXPECT_THAT(Ids(test.sketch.NetStyles()), ElementsAre("n"));
}

TEST(XMLSketch, StylesAreExactInCaseAndTolerancesAreNotRead)
{
    SketchElement const test(
        "<STYLES><StyleRef ID='s'/></STYLES><netStyles><StyleRef ID='s'/></netStyles>"
        "<Tolerance AngularTolerance='1' LinearTolerance='1' ParamTolerance='1'/>");
    EXPECT_TRUE(test.sketch.Styles().IsEmpty());
    EXPECT_TRUE(test.sketch.NetStyles().IsEmpty());
    EXPECT_EQ(test.sketch.AngularTolerance(), -1.0);
    EXPECT_EQ(test.sketch.LinearTolerance(), -1.0);
    EXPECT_EQ(test.sketch.ParamTolerance(), -1.0);
}

TEST(XMLSketch, AnIdentityTransformLeavesAnEarlierOne)
{
    std::string const move = "<Transform>" + MoveText(4) + "</Transform>";
    std::string const none = "<Transform>" + MoveText(0) + "</Transform>";
    EXPECT_EQ(SketchElement(none).sketch.Transform(), nullptr);
    SketchElement const both(move + none);
    ASSERT_NE(both.sketch.Transform(), nullptr);
    EXPECT_EQ(both.sketch.Transform()->Element(0, 3), 4.0);
    EXPECT_EQ(SketchElement(move + "<Transform>" + MoveText(9) + "</Transform>").sketch.Transform()->Element(0, 3),
              9.0);
}

TEST(XMLSketch, IdsAreMapped)
{
    TestScene scene(
        InScene("<ISketch ID='s' SketchTypeEnum='kSketchType_2D'><ChildSet><IPoint ID='p'/><Child ID='p'/>"
                "<Child ID='s'/></ChildSet></ISketch>"));
    EXPECT_THAT(Ids(scene.WithPrefix("n").Begin().Get<ISketch>("n1").PointIds()), ElementsAre("n2"));
}

}  // namespace KVR::Test
