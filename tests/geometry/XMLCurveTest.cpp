#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "framework/kernel/gmk_array.h"
#include "framework/xml_util/DomWalk.h"
#include "geometry/XMLCurve.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

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
    EXPECT_THROW(test.curve.CurveDataAt(1), std::out_of_range);
}

TEST(XMLCurve, AKernelCurveWhoseEntitiesAreUnknownCountsOneNullEntry)
{
    ParsedDocument const document(R"(<ICurve ID="c"><GMKEntity EntityId="x"/><GMKEntity/></ICurve>)");
    TestScene scene("<S/>");
    XMLCurve curve(nullptr);
    EXPECT_EQ(curve.CurveDataCount(), 1U);
    EXPECT_EQ(curve.CurveDataAt(0), nullptr);
    EXPECT_THROW(curve.CurveDataAt(1), std::out_of_range);
    EXPECT_TRUE(curve.KernelCurves().empty());
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
