#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <stdexcept>

#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"
#include "framework/xml_util/DomWalk.h"
#include "geometry/XMLCurve.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ReadElement.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

std::string const kRay = MeshInfoHeader(1).Bytes() + RecordFront(2, "c") + VertexBytes(2);

struct CurveElement
{
    explicit CurveElement(std::string const& attributes, std::string const& children = "")
        : scene(std::string("<Scene>") + kMeshInfo + "<ICurve ID=\"c\" " + attributes + ">" + children +
                "</ICurve></Scene>"),
          curve(scene.WithFile("s.mesh", kRay).Begin().Get<ICurve>("c"))
    {
    }
    TestScene scene;
    ICurve& curve;
};

// A curve of the kernel form, and one curve of the kernel, "e", that elements may name.
struct KernelCurve
{
    KernelCurve() : curve(&reading.Producer())
    {
        GMKGlobalDataSaveRestore const guard;
        GMKHistoryUtil::SetActiveHistoryStream(reading.Producer().GetHistoryStream());
        EDGE edge(ArcEdge());
        KVR::curve* made = nullptr;
        EXPECT_TRUE(GKI_MAKE_CURVE::from_edge(&edge, false, made).ok());
        reading.Index().curveEntities["e"] = made;
    }
    bool Read(std::string const& element)
    {
        return curve.ReadFromXML(reading.Parse(element), reading.Index().curveEntities);
    }

    ReadElement reading;
    XMLCurve curve;
};

TEST(XMLCurve, WithoutVisibilityItIsShown)
{
    CurveElement const test("");
    EXPECT_TRUE(test.curve.IsVisible());
    EXPECT_TRUE(test.curve.IsNetVisible());
    CurveElement const hidden(R"(Visibility="true" NetVisibility="01")");
    EXPECT_FALSE(hidden.curve.IsVisible());
    EXPECT_FALSE(hidden.curve.IsNetVisible());
    EXPECT_TRUE(CurveElement(R"(Visibility="1")").curve.IsVisible());
}

TEST(XMLCurve, TheLastExtensionDataIsKeptUnlessItsTypeIsEmpty)
{
    CurveElement const test("", R"(<ExtensionData TypeId="a"/><ExtensionData TypeId="b"/>)");
    ExtensionDataContent content;
    EXPECT_EQ(test.curve.ExtensionDataByTypeId("a", content), kIsValueSpecified_No);
    EXPECT_EQ(test.curve.ExtensionDataByTypeId("b", content), kIsValueSpecified_Yes);
    CurveElement const empty("", R"(<ExtensionData TypeId="a"/><ExtensionData/>)");
    EXPECT_EQ(empty.curve.ExtensionDataByTypeId("a", content), kIsValueSpecified_No);
    EXPECT_EQ(empty.curve.ExtensionDataByTypeId("", content), kIsValueSpecified_No);
}

TEST(XMLCurve, AnIdentityTransformIsNull)
{
    EXPECT_EQ(CurveElement("", "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>").curve.Transform(), nullptr);
    CurveElement const moved("", "<Transform>1 0 0 2 0 1 0 0 0 0 1 0 0 0 0 1</Transform>");
    ASSERT_NE(moved.curve.Transform(), nullptr);
    EXPECT_EQ(moved.curve.Transform()->Element(0, 3), 2.0);
    EXPECT_EQ(CurveElement("",
                           "<Transform>1 0 0 2 0 1 0 0 0 0 1 0 0 0 0 1</Transform>"
                           "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>")
                  .curve.Transform(),
              nullptr);
}

TEST(XMLCurve, UnitsTolerancesStylesAndKeysAreReadInAnyOrder)
{
    std::string const unit =
        R"(<Unit LengthUnit="kUnitType_Inch" DisplayAngleUnit="kUnitType_Degree" DisplayLengthUnit="kUnitType_Foot"/>)";
    std::string const rest =
        R"(<Tolerance AngularTolerance="1" LinearTolerance="2" ParamTolerance="3"/><ChangeKey>k</ChangeKey>
        <Styles><StyleRef ID="s"/></Styles><NetStyles><StyleRef ID="n"/></NetStyles>)";
    for (std::string const& children : {unit + rest, rest + unit})
    {
        CurveElement const test(R"(Label="L" VersionPersistentId="v")", children);
        UnitTypeEnum value = kUnitType_Unknown;
        EXPECT_EQ(test.curve.LengthUnit(value), kIsValueSpecified_Yes);
        EXPECT_EQ(value, kUnitType_Inch);
        EXPECT_EQ(test.curve.DisplayAngleUnit(value), kIsValueSpecified_Yes);
        EXPECT_EQ(value, kUnitType_Degree);
        EXPECT_EQ(test.curve.AngularTolerance(), 1.0);
        EXPECT_EQ(test.curve.LinearTolerance(), 2.0);
        EXPECT_EQ(test.curve.ParamTolerance(), 3.0);
        EXPECT_THAT(Ids(test.curve.Styles()), ElementsAre("s"));
        EXPECT_THAT(Ids(test.curve.NetStyles()), ElementsAre("n"));
        UTF8String text;
        EXPECT_EQ(test.curve.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_Yes);
        EXPECT_EQ(test.curve.VersionPersistentId(text), kIsValueSpecified_Yes);
        EXPECT_EQ(Text(test.curve.Label()), "L");
    }
}

TEST(XMLCurve, AUnitAndATransformGiveTheSameInEitherOrder)
{
    std::string const unit =
        R"(<Unit LengthUnit="kUnitType_Inch" DisplayAngleUnit="kUnitType_Degree" DisplayLengthUnit="kUnitType_Foot"/>)";
    std::string const transform = "<Transform>1 0 0 2 0 1 0 3 0 0 1 4 0 0 0 1</Transform>";
    for (std::string const& children : {unit + transform, transform + unit})
    {
        CurveElement const test("", children);
        UnitTypeEnum value = kUnitType_Unknown;
        EXPECT_EQ(test.curve.LengthUnit(value), kIsValueSpecified_Yes);
        EXPECT_EQ(value, kUnitType_Inch) << children;
        EXPECT_EQ(test.curve.DisplayAngleUnit(value), kIsValueSpecified_Yes);
        EXPECT_EQ(value, kUnitType_Degree) << children;
        EXPECT_EQ(test.curve.DisplayLengthUnit(value), kIsValueSpecified_Yes);
        EXPECT_EQ(value, kUnitType_Foot) << children;
        ASSERT_NE(test.curve.Transform(), nullptr) << children;
        // Its lengths are as written, whatever the unit.
        EXPECT_EQ(test.curve.Transform()->Element(0, 3), 2.0) << children;
        EXPECT_EQ(test.curve.Transform()->Element(1, 3), 3.0) << children;
        EXPECT_EQ(test.curve.Transform()->Element(2, 3), 4.0) << children;
    }
}

TEST(XMLCurve, UnsetTolerancesAreMinusOneAndUnitsZero)
{
    CurveElement const test("", R"(<tolerance AngularTolerance="1"/><unit LengthUnit="kUnitType_Inch"/>)");
    EXPECT_EQ(test.curve.AngularTolerance(), -1.0);
    UnitTypeEnum value = kUnitType_Inch;
    EXPECT_EQ(test.curve.LengthUnit(value), kIsValueSpecified_Yes);
    EXPECT_EQ(value, kUnitType_Unknown);
}

TEST(XMLCurve, StylesInAnotherCaseMatchAndReadNothing)
{
    CurveElement const test("", R"(<STYLES><StyleRef ID="s"/></STYLES><netstyles><StyleRef ID="s"/></netstyles>)");
    EXPECT_TRUE(test.curve.Styles().IsEmpty());
    EXPECT_TRUE(test.curve.NetStyles().IsEmpty());
}

TEST(XMLCurve, AStoreCurveHasItsDataAndNoKernelCurves)
{
    CurveElement const test("", R"(<GMKEntity EntityId="e"/>)");
    EXPECT_EQ(test.curve.CurveDataCount(), 1U);
    EXPECT_NE(test.curve.CurveDataAt(0), nullptr);
    EXPECT_TRUE(test.curve.KernelCurves().empty());
    EXPECT_EQ(test.curve.StylesMap(), nullptr);
    EXPECT_THAT([&] { test.curve.CurveDataAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLCurve, AKernelCurveWhoseEntitiesAreUnknownCountsOneNullEntry)
{
    KernelCurve test;
    ASSERT_TRUE(test.Read(R"(<ICurve ID="c"><GMKEntity EntityId="x"/><GMKEntity/></ICurve>)"));
    EXPECT_EQ(test.curve.CurveDataCount(), 1U);
    EXPECT_EQ(test.curve.CurveDataAt(0), nullptr);
    EXPECT_THAT([&] { test.curve.CurveDataAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_EQ(test.curve.KernelCurves().count(), 0);
    ASSERT_TRUE(test.Read(R"(<ICurve ID="c"><gmkentity EntityId="e"/><GMKENTITY EntityId="e"/></ICurve>)"));
    EXPECT_EQ(test.curve.KernelCurves().count(), 0) << "the name is exact";
    ASSERT_TRUE(test.Read(R"(<ICurve ID="c"><GMKEntity EntityId="x"/><GMKEntity EntityId="e"/></ICurve>)"));
    EXPECT_EQ(test.curve.KernelCurves().count(), 1) << "one that is known is found";
    EXPECT_EQ(test.curve.CurveDataCount(), 1U);
}

TEST(XMLCurve, WhatASecondElementDoesNotSayIsEmpty)
{
    KernelCurve test;
    ASSERT_TRUE(test.Read(R"(<ICurve ID="c" Label="L" VersionPersistentId="v" Visibility="0" NetVisibility="0">
                             <GMKEntity EntityId="e"/></ICurve>)"));
    EXPECT_EQ(Text(test.curve.Id()), "c");
    EXPECT_EQ(Text(test.curve.Label()), "L");
    UTF8String version;
    EXPECT_EQ(test.curve.VersionPersistentId(version), kIsValueSpecified_Yes);
    EXPECT_FALSE(test.curve.IsVisible());
    EXPECT_EQ(test.curve.KernelCurves().count(), 1);
    ASSERT_TRUE(test.Read("<ICurve/>"));
    EXPECT_EQ(Text(test.curve.Id()), "");
    EXPECT_EQ(Text(test.curve.Label()), "");
    EXPECT_EQ(test.curve.VersionPersistentId(version), kIsValueSpecified_No);
    EXPECT_TRUE(test.curve.IsVisible());
    EXPECT_TRUE(test.curve.IsNetVisible());
    EXPECT_EQ(test.curve.KernelCurves().count(), 0);
}

TEST(XMLCurve, WhatIsNoElementIsRefusedAndChangesNothing)
{
    KernelCurve test;
    ASSERT_TRUE(test.Read(R"(<ICurve ID="c"><GMKEntity EntityId="e"/></ICurve>)"));
    EXPECT_FALSE(test.curve.ReadFromXML(nullptr, test.reading.Index().curveEntities));
    EXPECT_EQ(Text(test.curve.Id()), "c");
    EXPECT_EQ(test.curve.KernelCurves().count(), 1);
}

TEST(XMLCurve, WithoutAnyStoreAnElementReadsToNothing)
{
    TestScene scene(R"(<S><ICurve ID="c"/><IPart ID="p" Label=""><ChildSet><ICurve ID="d"/></ChildSet></IPart></S>)");
    scene.Begin();
    EXPECT_FALSE(scene.Has("c"));
    EXPECT_TRUE(scene.ChildIds("p").empty());
}

TEST(XMLCurve, UnderAPrefixTheStoreIsAskedForTheMappedId)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    EXPECT_FALSE(scene.WithPrefix("n").WithFile("s.mesh", kRay).Begin().Has("n1"));
    TestScene same(StoreScene(kMeshInfo, {}, {"c"}));
    same.WithPrefix("n").WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(2, "n1") + VertexBytes(2)).Begin();
    EXPECT_TRUE(same.Has("n1"));
}

TEST(XMLCurve, PartsAndAssembliesListTheirCurvesInOrder)
{
    TestScene scene(
        std::string("<Scene>") + kMeshInfo +
        R"(<IPart ID="p" Label=""><ChildSet><ICurve ID="x"/><ICurve ID="c"/><IPolygonMesh ID="m"/></ChildSet></IPart>
                       <IAssembly ID="q" Label=""><ChildSet><IPolygonMesh ID="m"/><ICurve ID="c"/></ChildSet></IAssembly></Scene>)");
    scene.WithFile("s.mesh", MeshInfoHeader(2).Bytes() + RecordFront(2, "c") + VertexBytes(2) + TriangleRecord("m"))
        .Begin();
    EXPECT_THAT(scene.ChildIds("p"), ElementsAre("c", "m"));
    EXPECT_THAT(scene.ChildIds("q"), ElementsAre("m", "c"));
}

TEST(XMLCurve, TheStoreFormLeavesTheFileBehindItsPayload)
{
    TempFolder folder;
    std::string const bytes = VertexBytes(2) + "behind";
    folder.Write("c", bytes);
    FilePtr const file(UTF8String(folder.NarrowPathOf("c").c_str()), "rb");
    XMLCurve const curve(nullptr, file, 2, IOUtil::IsBigEndian());
    EXPECT_EQ(std::ftell(file), 48);
    EXPECT_NE(dynamic_cast<IRayData*>(curve.CurveDataAt(0)), nullptr);
}

}  // namespace

}  // namespace KVR::Test
