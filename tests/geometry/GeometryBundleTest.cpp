// Geometric sets and extension geometry: what they share, and where they differ.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "geometry/XMLCurve.h"
#include "geometry/XMLExtensionGeometry.h"
#include "geometry/XMLGeometricSet.h"
#include "producer/ElementReaders.h"
#include "tests/structure/Answers.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ReadElement.h"
#include "tests/support/RunOnStack.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

template <class Owner>
std::vector<std::string> ChildrenOf(Owner const& owner)
{
    std::vector<std::string> ids;
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
        ids.push_back(Text(owner.ChildAt(i).Id()));
    return ids;
}

std::vector<std::string> BundleChildren(IObject* object)
{
    if (auto const* const set = dynamic_cast<IGeometricSet const*>(object))
        return ChildrenOf(*set);
    return ChildrenOf(dynamic_cast<IExtensionGeometry const&>(*object));
}

// What is common, asked of each of the two.
class GeometryBundle : public testing::TestWithParam<char const*>
{
protected:
    std::string Element(std::string const& children, std::string const& attributes = "") const
    {
        return std::string("<") + GetParam() + " ID='g' " + attributes + ">" + children + "</" + GetParam() + ">";
    }
    IGeometry& Read(std::string const& children, std::string const& attributes = "", std::string const& around = "")
    {
        m_scene = std::make_unique<TestScene>("<Scene>" + around + Element(children, attributes) + "</Scene>");
        return m_scene->Begin().Get<IGeometry>("g");
    }
    std::vector<std::string> ChildIds(std::string const& set, std::string const& around = "")
    {
        return BundleChildren(&Read("<ChildSet>" + set + "</ChildSet>", "", around));
    }

    std::unique_ptr<TestScene> m_scene;
};

}  // namespace

TEST_P(GeometryBundle, AttributesUnitsStylesAndExtensionDataAreRead)
{
    IGeometry& bundle = Read(
        "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' DisplayLengthUnit='kUnitType_Foot'/>"
        "<ExtensionData TypeId='t' Content='c'/><ExtensionData Content='n'/><Styles><StyleRef ID='s'/></Styles>"
        "<NetStyles><StyleRef ID='n'/></NetStyles>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(bundle.Label()), "L");
    EXPECT_EQ(TextOf(bundle, &IObject::VersionPersistentId), "v");
    EXPECT_EQ(UnitsOf(bundle), (UnitAnswers{kUnitType_Inch, kUnitType_Degree, kUnitType_Foot}));
    EXPECT_EQ(ExtensionTextOf(bundle, "t"), "c");
    EXPECT_EQ(ExtensionTextOf(bundle, ""), "n");
    EXPECT_THAT(Ids(bundle.Styles()), ElementsAre("s"));
    EXPECT_THAT(Ids(bundle.NetStyles()), ElementsAre("n"));
    EXPECT_FALSE(bundle.IsThreadSafe());
}

TEST_P(GeometryBundle, VisibilityTakesOneAndTrueAndIsShownWhenAbsent)
{
    EXPECT_TRUE(Read("").IsVisible());
    EXPECT_TRUE(Read("").IsNetVisible());
    EXPECT_TRUE(Read("", "Visibility='1' NetVisibility='TRUE'").IsNetVisible());
    IGeometry const& hidden = Read("", "Visibility='' NetVisibility='2'");
    EXPECT_FALSE(hidden.IsVisible());
    EXPECT_FALSE(hidden.IsNetVisible());
}

TEST_P(GeometryBundle, AToleranceIsReadWhenItIsWrittenExactly)
{
    std::string const values = " AngularTolerance='1' LinearTolerance='2' ParamTolerance='3'/>";
    IGeometry const& read = Read("<Tolerance" + values);
    EXPECT_EQ(read.AngularTolerance(), 1.0);
    EXPECT_EQ(read.LinearTolerance(), 2.0);
    EXPECT_EQ(read.ParamTolerance(), 3.0);
    IGeometry const& capital = Read("<TOLERANCE" + values);
    EXPECT_EQ(capital.AngularTolerance(), -1.0) << "it matches, and then reads nothing";
    EXPECT_EQ(capital.LinearTolerance(), -1.0);
    EXPECT_EQ(capital.ParamTolerance(), -1.0);
}

TEST_P(GeometryBundle, NamesInAnotherCaseReadNothing)
{
    IGeometry const& bundle = Read(
        "<STYLES><StyleRef ID='s'/></STYLES><netstyles><StyleRef ID='s'/></netstyles>"
        "<unit LengthUnit='kUnitType_Inch'/><childset><IPoint ID='p'/></childset>");
    EXPECT_TRUE(bundle.Styles().IsEmpty());
    EXPECT_TRUE(bundle.NetStyles().IsEmpty());
    EXPECT_EQ(AnswerOf(bundle, &IUnit::LengthUnit), kUnitType_Unknown);
    EXPECT_FALSE(m_scene->Has("p"));
}

TEST_P(GeometryBundle, AnIdentityTransformLeavesAnEarlierOne)
{
    std::string const move = "<Transform>" + MoveText(4) + "</Transform>";
    std::string const none = "<Transform>" + MoveText(0) + "</Transform>";
    EXPECT_EQ(Read(none).Transform(), nullptr);
    ASSERT_NE(Read(move + none).Transform(), nullptr);
    EXPECT_EQ(Read(move + none).Transform()->Element(0, 3), 4.0);
    EXPECT_EQ(Read(move + "<Transform>" + MoveText(9) + "</Transform>").Transform()->Element(0, 3), 9.0);
}

TEST_P(GeometryBundle, ChildrenAreListedOnceInTheOrderOfTheDocument)
{
    EXPECT_THAT(ChildIds("<IPoint ID='b'/><IPointCloud ID='a'/><Child ID='b'/><Child ID='early'/><Child ID='nowhere'/>"
                         "<IPoint ID='b'/><ISketch ID='k' SketchTypeEnum='kSketchType_2D'/><IWorkPoint ID='w'/>",
                         "<IPart ID='early'/>"),
                ElementsAre("b", "a", "early"));
    EXPECT_FALSE(m_scene->Has("k")) << "not among the children of a bundle";
    EXPECT_FALSE(m_scene->Has("w"));
}

TEST_P(GeometryBundle, EachChildIsOfItsKind)
{
    EXPECT_THAT(
        ChildIds("<IBrep ID='a'/><IPoint ID='b'/><IPointCloud ID='c'/><IExtensionGeometry ID='d'/><IPoint ID='e'/>"),
        ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_NO_THROW(m_scene->Get<IBrep>("a"));
    EXPECT_NO_THROW(m_scene->Get<IPoint>("b"));
    EXPECT_NO_THROW(m_scene->Get<IPointCloud>("c"));
    EXPECT_NO_THROW(m_scene->Get<IExtensionGeometry>("d"));
}

TEST_P(GeometryBundle, FurtherSetsAddUp)
{
    EXPECT_THAT(BundleChildren(&Read("<ChildSet><IPoint ID='a'/></ChildSet><ChildSet><IPoint ID='b'/></ChildSet>")),
                ElementsAre("a", "b"));
}

TEST_P(GeometryBundle, MeshesAndCurvesComeFromTheirStores)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    Element("<ChildSet><ICurve ID='c'/><IPolygonMesh ID='none'/><ICurve ID='lost'/><IPolygonMesh "
                            "ID='m'/><IPoint ID='p'/></ChildSet>") +
                    "</Scene>");
    scene.WithFile("s.mesh", MeshInfoHeader(2).Bytes() + RecordFront(2, "c") + VertexBytes(2) + TriangleRecord("m"))
        .Begin();
    EXPECT_THAT(BundleChildren(&scene.Get<IObject>("g")), ElementsAre("c", "m", "p"));
    EXPECT_NE(scene.Get<ICurve>("c").CurveDataAt(0), nullptr);
    EXPECT_FALSE(scene.Has("none"));
    EXPECT_FALSE(scene.Has("lost"));
}

TEST_P(GeometryBundle, ACurveWithoutAnyStoreIsPassedOver)
{
    EXPECT_THAT(ChildIds("<ICurve ID='c'/><IPoint ID='p'/>"), ElementsAre("p"));
    EXPECT_FALSE(m_scene->Has("c"));
}

TEST_P(GeometryBundle, ExtensionGeometryNests)
{
    EXPECT_THAT(ChildIds("<IExtensionGeometry ID='e'><ChildSet><IPoint ID='p'/></ChildSet></IExtensionGeometry>"),
                ElementsAre("e"));
    EXPECT_THAT(BundleChildren(&m_scene->Get<IObject>("e")), ElementsAre("p"));
}

TEST_P(GeometryBundle, IdsAreMapped)
{
    TestScene scene("<Scene>" +
                    Element("<ChildSet><IPoint ID='p'/><IExtensionGeometry ID='e'/><Child ID='p'/></ChildSet>"
                            "<Styles><StyleRef ID='s'/></Styles>") +
                    "</Scene>");
    IGeometry& bundle = scene.WithPrefix("n").Begin().Get<IGeometry>("n1");
    EXPECT_THAT(BundleChildren(&bundle), ElementsAre("n2", "n3"));
    EXPECT_THAT(Ids(bundle.Styles()), ElementsAre("n4"));
}

TEST_P(GeometryBundle, AThousandLevelsAreReadAndThoseBeyondDropped)
{
    constexpr int kLevels = 3000;
    std::string xml = "<Scene>";
    for (int i = 0; i < kLevels; ++i)
        xml += std::string("<") + GetParam() + " xmlns='' ID='g" + std::to_string(i) + "'><ChildSet xmlns=''>";
    for (int i = kLevels; i > 0; --i)
        xml += std::string("</ChildSet></") + GetParam() + ">" + (i == 1001 ? "<IPoint ID='behind' xmlns=''/>" : "");
    TestScene scene(xml + "<IPoint ID='p'/></Scene>");
    RunOnStack(kSmallStack, [&] { scene.Begin(); });
    EXPECT_TRUE(scene.Has("g999"));
    EXPECT_FALSE(scene.Has("g1000"));
    EXPECT_TRUE(scene.Has("p"));
    EXPECT_THAT(BundleChildren(&scene.Get<IObject>("g998")), ElementsAre("g999"));
    EXPECT_THAT(BundleChildren(&scene.Get<IObject>("g999")), ElementsAre("behind"));
}

TEST_P(GeometryBundle, AThousandLevelsBehindAThousandReferencesLoadOnASmallStack)
{
    constexpr int kLevels = 1000;
    std::string xml = "<Scene><IFile ID='0'><ChildSet><A ID='a0'/></ChildSet></IFile>";
    for (int i = 0; i < kLevels - 1; ++i)
        xml += "<IAssembly ID='a" + std::to_string(i) + "'><ChildSet><IInstance ID='i" + std::to_string(i) +
               "'><Child ID='a" + std::to_string(i + 1) + "'/></IInstance></ChildSet></IAssembly>";
    xml += "<IPart ID='a" + std::to_string(kLevels - 1) + "'><ChildSet>";
    for (int i = 0; i < kLevels; ++i)
        xml += std::string("<") + GetParam() + " xmlns='' ID='g" + std::to_string(i) + "'><ChildSet xmlns=''>";
    for (int i = 0; i < kLevels; ++i)
        xml += std::string("</ChildSet></") + GetParam() + ">";
    TestScene scene(xml + "</ChildSet></IPart></Scene>");
    RunOnStack(kSmallStack, [&] { scene.Begin(); });
    EXPECT_TRUE(scene.Has("g999"));
    EXPECT_TRUE(scene.Has("i0"));
}

INSTANTIATE_TEST_SUITE_P(Each, GeometryBundle, testing::Values("IGeometricSet", "IExtensionGeometry"),
                         [](auto const& test) { return std::string(test.param); });

namespace
{

template <class Bundle>
class BundleOf : public testing::Test
{
protected:
    ReadElement m_reading;
    Bundle m_bundle{&m_reading.Producer()};
};

using GeometricSetOf = BundleOf<XMLGeometricSet>;
using ExtensionGeometryOf = BundleOf<XMLExtensionGeometry>;

}  // namespace

TEST_F(GeometricSetOf, ACurveOfBothStoresIsReadTwiceAndListedOnce)
{
    m_reading.AddKernelEntry("edge");
    ASSERT_TRUE(m_reading.ReadWithStores(
        m_bundle,
        m_reading.Parse("<IGeometricSet><ChildSet><ICurve ID='c'/><ICurve ID='c'/></ChildSet></IGeometricSet>")));
    EXPECT_THAT(ChildrenOf(m_bundle), ElementsAre("c"));
}

TEST_F(GeometricSetOf, AStoreCurveMayBeFollowedByAKernelCurveOfItsId)
{
    m_reading.AddKernelEntry("edge");
    auto stored = std::make_unique<XMLCurve>(&m_reading.Producer());
    XMLCurve* const first = stored.get();
    m_reading.Index().curveStore["c"] = {std::move(stored), first};
    ASSERT_TRUE(m_reading.ReadWithStores(
        m_bundle, m_reading.Parse("<IGeometricSet><ChildSet><ICurve ID='c'/></ChildSet></IGeometricSet>")));
    EXPECT_THAT(ChildrenOf(m_bundle), ElementsAre("c"));
    EXPECT_EQ(m_reading.Producer().Load("c"), first) << "the first one is found";
}

TEST_F(GeometricSetOf, ABadIndexThrowsAndTheCountItselfIsOutOfRange)
{
    ASSERT_TRUE(m_reading.ReadWithStores(
        m_bundle, m_reading.Parse("<IGeometricSet><ChildSet><IPoint ID='p'/></ChildSet></IGeometricSet>")));
    EXPECT_THAT([&] { static_cast<void>(m_bundle.ChildAt(1)); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { static_cast<void>(m_bundle.ChildAt(2)); },
                ThrowsMessage<GeneralException>("Invalid index to child of XMLGeometricSet."));
}

TEST_F(ExtensionGeometryOf, ABadIndexThrowsAndTheCountItselfIsOutOfRange)
{
    EXPECT_THAT([&] { static_cast<void>(m_bundle.ChildAt(0)); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { static_cast<void>(m_bundle.ChildAt(1)); },
                ThrowsMessage<GeneralException>("Invalid index to child of XMLExtensionGeometry."));
}

TEST_F(GeometricSetOf, AChildThatWasDisposedOfHasAnEmptyId)
{
    ASSERT_TRUE(m_reading.ReadWithStores(
        m_bundle, m_reading.Parse("<IGeometricSet><ChildSet><IPoint ID='p'/></ChildSet></IGeometricSet>")));
    m_reading.Producer().Dispose("p");
    EXPECT_THAT(ChildrenOf(m_bundle), ElementsAre(""));
}

TEST_F(GeometricSetOf, ANullNodeFails)
{
    EXPECT_FALSE(m_reading.ReadWithStores(m_bundle, nullptr));
}

TEST_F(ExtensionGeometryOf, ANullNodeFails)
{
    SideFileIndex& index = m_reading.Index();
    EXPECT_FALSE(m_reading.ReadWithStores(m_bundle, nullptr));
    EXPECT_FALSE(ReadExtensionGeometry(&m_reading.Producer(), nullptr, index.bodyEntities, index.curveEntities,
                                       index.meshStore, index.curveStore));
}

TEST(XMLGeometricSet, SetsNestAndHaveAChangeKey)
{
    TestScene scene(
        InScene("<IGeometricSet ID='a'><ChildSet><IGeometricSet ID='b'><ChildSet><IPoint ID='p'/></ChildSet>"
                "</IGeometricSet></ChildSet><ChangeKey>k</ChangeKey></IGeometricSet>"));
    scene.Begin();
    EXPECT_THAT(ChildrenOf(scene.Get<IGeometricSet>("a")), ElementsAre("b"));
    EXPECT_THAT(ChildrenOf(scene.Get<IGeometricSet>("b")), ElementsAre("p"));
    EXPECT_EQ(ChangeKeyOf(scene.Get<IGeometricSet>("a")), "k");
}

TEST(XMLGeometricSet, WhatStandsBehindANestedSetIsRead)
{
    TestScene scene(
        "<Scene><IGeometricSet ID='g'><ChildSet><IGeometricSet ID='a'/><IGeometricSet ID='b'/><IPoint ID='c'/>"
        "</ChildSet></IGeometricSet></Scene>");
    EXPECT_THAT(BundleChildren(scene.Begin().Producer().Load("g")), ElementsAre("a", "b", "c"));
}

TEST(XMLExtensionGeometry, AGeometricSetInItIsSkippedAndThereIsNoChangeKey)
{
    TestScene scene(
        InScene("<IExtensionGeometry ID='a'><ChangeKey>k</ChangeKey><ChildSet><IGeometricSet ID='b'/><IPoint ID='p'/>"
                "</ChildSet></IExtensionGeometry>"));
    scene.Begin();
    EXPECT_THAT(ChildrenOf(scene.Get<IExtensionGeometry>("a")), ElementsAre("p"));
    EXPECT_EQ(ChangeKeyOf(scene.Get<IExtensionGeometry>("a")), std::nullopt);
    EXPECT_FALSE(scene.Has("b"));
}

}  // namespace KVR::Test
