#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "mesh/XMLPolygonMesh.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string const kStore = MeshInfoHeader(1).Bytes() + TriangleRecord("m");

struct MeshScene
{
    /// Attributes and children of the element of mesh "m".
    explicit MeshScene(std::string const& attributes, std::string const& children = "")
        : scene(std::string("<Scene>") + kMeshInfo + "<IPolygonMesh ID=\"m\" " + attributes + ">" + children +
                "</IPolygonMesh></Scene>"),
          mesh(scene.WithFile("s.mesh", kStore).Begin().Get<IPolygonMesh>("m"))
    {
    }
    TestScene scene;
    IPolygonMesh& mesh;
};

TEST(XMLPolygonMesh, AnIdThatNoStoreHoldsGivesNoObject)
{
    TestScene scene(StoreScene(kMeshInfo, {"m", "x"}));
    scene.WithFile("s.mesh", kStore).Begin();
    EXPECT_TRUE(scene.Has("m"));
    EXPECT_FALSE(scene.Has("x"));
}

TEST(XMLPolygonMesh, AnIdThatNoStoreHoldsIsNotFoundByASecondElementEither)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    R"(<IPart ID="p" Label=""><ChildSet><IPolygonMesh ID="x"/><IPolygonMesh ID="x"/>
                       <IPolygonMesh ID="m"/></ChildSet></IPart><IPolygonMesh ID="x"/></Scene>)");
    scene.WithFile("s.mesh", kStore).Begin();
    EXPECT_THAT(scene.ChildIds("p"), ElementsAre("m"));
    EXPECT_FALSE(scene.Has("x"));
}

TEST(XMLPolygonMesh, WithoutAnIdItIsNoObject)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    R"(<IPart ID="p" Label=""><ChildSet><IPolygonMesh/></ChildSet></IPart></Scene>)");
    EXPECT_TRUE(scene.WithFile("s.mesh", kStore).Begin().ChildIds("p").empty());
}

TEST(XMLPolygonMesh, BeforeAnElementDressesItItIsShownAndPlain)
{
    XMLPolygonMesh const mesh("m", nullptr);
    EXPECT_TRUE(mesh.IsVisible());
    EXPECT_EQ(Text(mesh.Id()), "m");
    EXPECT_TRUE(mesh.Label().IsEmpty());
    EXPECT_EQ(mesh.PolygonCount(), 0U);
    EXPECT_EQ(mesh.Transform(), nullptr);
    UnitTypeEnum unit = kUnitType_Inch;
    EXPECT_EQ(mesh.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
    unit = kUnitType_Inch;
    EXPECT_EQ(mesh.DisplayLengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
    EXPECT_EQ(mesh.FaceSegmentCount(), 0U);
    IdSetSet materials;
    EXPECT_EQ(mesh.PolygonMaterials(materials), kIsValueSpecified_No);
}

TEST(XMLPolygonMesh, AMeshThatNoElementNamesIsNotServed)
{
    TestScene scene(StoreScene(kMeshInfo, {}));
    EXPECT_FALSE(scene.WithFile("s.mesh", kStore).Begin().Has("m"));
}

TEST(XMLPolygonMesh, WithoutVisibilityItIsHidden)
{
    EXPECT_FALSE(MeshScene("").mesh.IsVisible());
}

TEST(XMLPolygonMesh, VisibilityIsOneOrTheWordTrueInAnyCase)
{
    for (char const* const text : {"1", "true", "True", "TRUE"})
        EXPECT_TRUE(MeshScene(std::string("Visibility=\"") + text + "\"").mesh.IsVisible()) << text;
    for (char const* const text : {"0", "2", "01", "yes", ""})
        EXPECT_FALSE(MeshScene(std::string("Visibility=\"") + text + "\"").mesh.IsVisible()) << text;
}

TEST(XMLPolygonMesh, TheTypeIsOneOfFourTextsAndRegularOtherwise)
{
    std::pair<char const*, int> const rows[] = {
        {"kPolygonMeshType_Regular", 0}, {"kPolygonMeshType_Triangular", 1}, {"kPolygonMeshType_Strip", 2},
        {"kPolygonMeshType_Fan", 3},     {"kPolygonMeshType_fan", 0},        {"", 0},
    };
    for (auto const& [text, type] : rows)
        EXPECT_EQ(MeshScene(std::string("Type=\"") + text + "\"").mesh.MeshType(), type) << text;
    EXPECT_EQ(MeshScene("").mesh.MeshType(), 0);
}

TEST(XMLPolygonMesh, EveryMeshIsCounterClockwise)
{
    for (char const* const text :
         {"kPolygonMeshOrientation_ClockWise", "kPolygonMeshOrientation_CounterClockWise", "1"})
        EXPECT_EQ(MeshScene(std::string("Orientation=\"") + text + "\"").mesh.MeshOrientation(), 0) << text;
    EXPECT_EQ(MeshScene("").mesh.MeshOrientation(), 0);
}

TEST(XMLPolygonMesh, SingleSidednessIsNeverSpecified)
{
    bool singleSided = true;
    EXPECT_EQ(MeshScene(R"(IsSingleSided="1")").mesh.IsSingleSided(singleSided), kIsValueSpecified_No);
    EXPECT_TRUE(singleSided);
}

TEST(XMLPolygonMesh, TheLevelOfDetailIsSpecifiedAlsoWhenEmptyAndNotMapped)
{
    UTF8String id("x");
    EXPECT_EQ(MeshScene("").mesh.LODId(id), kIsValueSpecified_Yes);
    EXPECT_TRUE(id.IsEmpty());
    TestScene scene(std::string("<Scene>") + kMeshInfo + R"(<IPolygonMesh ID="m" LODID="lod"/></Scene>)");
    scene.WithPrefix("n").WithFile("s.mesh", kStore).Begin().Get<IPolygonMesh>("n1").LODId(id);
    EXPECT_EQ(Text(id), "lod");
}

TEST(XMLPolygonMesh, UnderAPrefixTheStoreIsAskedForTheWrittenId)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithPrefix("n").WithFile("s.mesh", kStore).Begin();
    EXPECT_FALSE(scene.Has("m"));
    EXPECT_EQ(Text(scene.Get<IPolygonMesh>("n1").Id()), "n1");
}

TEST(XMLPolygonMesh, AnElementWithoutAMeshTakesNoNewId)
{
    TestScene scene(
        std::string("<Scene>") + kMeshInfo +
        R"(<IPart ID="p" Label=""><ChildSet><IPolygonMesh ID="x"/><IPolygonMesh ID="m"/></ChildSet></IPart></Scene>)");
    scene.WithPrefix("n").WithFile("s.mesh", kStore).Begin();
    EXPECT_THAT(scene.ChildIds("n1"), ElementsAre("n2"));
}

TEST(XMLPolygonMesh, UnitsGiveLengthAndDisplayLengthAlone)
{
    MeshScene test(
        "",
        R"(<Unit LengthUnit="kUnitType_Inch" DisplayAngleUnit="kUnitType_Degree" DisplayLengthUnit="kUnitType_Foot"/>)");
    UnitTypeEnum unit = kUnitType_Unknown;
    EXPECT_EQ(test.mesh.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Inch);
    EXPECT_EQ(test.mesh.DisplayLengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Foot);
    EXPECT_EQ(test.mesh.DisplayAngleUnit(unit), kIsValueSpecified_No);
}

TEST(XMLPolygonMesh, TolerancesAreMinusOneWhateverTheSceneSays)
{
    MeshScene test("", R"(<Tolerance AngularTolerance="1" LinearTolerance="2" ParamTolerance="3"/>)");
    EXPECT_EQ(test.mesh.AngularTolerance(), -1.0);
    EXPECT_EQ(test.mesh.LinearTolerance(), -1.0);
    EXPECT_EQ(test.mesh.ParamTolerance(), -1.0);
}

TEST(XMLPolygonMesh, AnIdentityTransformIsNull)
{
    EXPECT_EQ(MeshScene("", "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>").mesh.Transform(), nullptr);
    MeshScene moved("", "<Transform>1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1</Transform>");
    ASSERT_NE(moved.mesh.Transform(), nullptr);
    EXPECT_EQ(moved.mesh.Transform()->Element(1, 3), 6.0);
    EXPECT_EQ(moved.mesh.VertexAt(1).x, 1.0) << "vertices stay as the store has them";
    moved.mesh.SetMeshTransform(Matrix3d());
    EXPECT_EQ(moved.mesh.Transform(), nullptr);
}

// How far a mesh is moved along x; far away for one that has no transform.
double XOf(MeshScene const& scene)
{
    return scene.mesh.Transform() ? scene.mesh.Transform()->Element(0, 3) : 1e9;
}

TEST(XMLPolygonMesh, TheLastTransformCounts)
{
    std::string const moved = "<Transform>1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1</Transform>";
    std::string const identity = "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>";
    std::string const other = "<Transform>1 0 0 8 0 1 0 9 0 0 1 2 0 0 0 1</Transform>";
    EXPECT_EQ(MeshScene("", moved + identity).mesh.Transform(), nullptr);
    EXPECT_EQ(XOf(MeshScene("", identity + moved)), 5.0);
    EXPECT_EQ(XOf(MeshScene("", moved + other)), 8.0);
    EXPECT_EQ(XOf(MeshScene("", other + identity + moved)), 5.0);
    EXPECT_EQ(MeshScene("", "<Transform>1 0 0 5 nonsense</Transform>").mesh.Transform(), nullptr);
    EXPECT_EQ(MeshScene("", "<Transform/>").mesh.Transform(), nullptr);
}

TEST(XMLPolygonMesh, ChildrenAreKnownByTheirExactNames)
{
    MeshScene test(
        "", R"(<unit LengthUnit="kUnitType_Inch"/><CHANGEKEY>k</CHANGEKEY><NetStyles><StyleRef ID="s"/></NetStyles>
                          <styles><StyleRef ID="s"/></styles><extensionData TypeId="t"/>
                          <transform>1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1</transform>)");
    UnitTypeEnum unit = kUnitType_Inch;
    EXPECT_EQ(test.mesh.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
    UTF8String key;
    EXPECT_EQ(test.mesh.ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_No);
    EXPECT_TRUE(test.mesh.Styles().IsEmpty());
    EXPECT_TRUE(test.mesh.NetStyles().IsEmpty());
    ExtensionDataContent content;
    EXPECT_EQ(test.mesh.ExtensionDataByTypeId("t", content), kIsValueSpecified_No);
    EXPECT_EQ(test.mesh.Transform(), nullptr);
}

TEST(XMLPolygonMesh, CommonChildrenAreRead)
{
    MeshScene test(R"(Label="L" VersionPersistentId="v")",
                   R"(<ChangeKey>key</ChangeKey><Styles><StyleRef ID="s1"/></Styles><Styles><StyleRef ID="s2"/></Styles>
                      <ExtensionData TypeId="t" Content="c"/>)");
    UTF8String text;
    EXPECT_EQ(Text(test.mesh.Label()), "L");
    EXPECT_EQ(test.mesh.VersionPersistentId(text), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(text), "v");
    EXPECT_EQ(test.mesh.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(text), "key");
    EXPECT_THAT(Ids(test.mesh.Styles()), ElementsAre("s1", "s2"));
    ExtensionDataContent content;
    EXPECT_EQ(test.mesh.ExtensionDataByTypeId("t", content), kIsValueSpecified_Yes);
    EXPECT_TRUE(test.mesh.NetStyles().IsEmpty());
    EXPECT_FALSE(test.mesh.IsNetVisible());
}

TEST(XMLPolygonMesh, BadIndicesThrow)
{
    MeshScene test("");
    EditablePolygon const* polygon = nullptr;
    unsigned int slot = 0;
    EXPECT_THROW(test.mesh.VertexAt(3), std::out_of_range);
    EXPECT_THROW(test.mesh.NormalAt(0), std::out_of_range);
    EXPECT_THROW(test.mesh.TextureVertexSetAt(0), std::out_of_range);
    EXPECT_THROW(test.mesh.PolygonMaterialIndexAt(1, slot), std::out_of_range);
    EXPECT_THROW(test.mesh.PolygonAt(1, polygon), std::out_of_range);
    try
    {
        test.mesh.VertexAt(3);
    }
    catch (std::out_of_range const& error)
    {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

TEST(XMLPolygonMesh, PolygonSetGroupsAreNeverSpecified)
{
    MeshScene test("");
    IdSetSet groups;
    EXPECT_EQ(test.mesh.PolygonSetGroups(groups), kIsValueSpecified_No);
    EXPECT_EQ(test.mesh.PolygonSetGroupCount(), 0U);
}

TEST(XMLPolygonMesh, AMeshNamedTwiceIsDressedByTheFirst)
{
    TestScene scene(
        std::string("<Scene>") + kMeshInfo +
        R"(<IAssembly ID="a" Label=""><ChildSet><IPolygonMesh ID="m" Label="first"/><IPolygonMesh ID="m" Label="second"/></ChildSet></IAssembly></Scene>)");
    scene.WithFile("s.mesh", kStore).Begin();
    EXPECT_EQ(Text(scene.Get<IPolygonMesh>("m").Label()), "first");
    EXPECT_THAT(scene.ChildIds("a"), ElementsAre("m", "m"));
}

TEST(XMLPolygonMesh, UnderAPrefixBothElementsOfAMeshLeadToOneObject)
{
    TestScene scene(
        std::string("<Scene>") + kMeshInfo +
        R"(<IAssembly ID="a" Label=""><ChildSet><IPolygonMesh ID="m" Label="first"/><IPolygonMesh ID="m" Label="second"/></ChildSet></IAssembly></Scene>)");
    scene.WithPrefix("n").WithFile("s.mesh", kStore).Begin();
    std::vector<std::string> const ids = scene.ChildIds("n1");
    ASSERT_EQ(ids.size(), 2U);
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_EQ(Text(scene.Get<IPolygonMesh>(ids[0].c_str()).Label()), "first");
}

TEST(XMLPolygonMesh, AMissingMeshLeavesNoGapAmongAPartsChildren)
{
    TestScene scene(
        std::string("<Scene>") + kMeshInfo +
        R"(<IPart ID="p" Label=""><ChildSet><IPolygonMesh ID="x"/><IPolygonMesh ID="m"/></ChildSet></IPart></Scene>)");
    EXPECT_THAT(scene.WithFile("s.mesh", kStore).Begin().ChildIds("p"), ElementsAre("m"));
}

TEST(XMLPolygonMesh, ADisposedMeshDoesNotComeBackWithASecondReading)
{
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", kStore).Begin();
    scene.Producer().Dispose("m");
    scene.Begin();
    EXPECT_FALSE(scene.Has("m"));
}

TEST(XMLPolygonMesh, ADisposedMeshIsNoChildOfAPartThatIsReadAgain)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo +
                    "<IPart ID='p'><ChildSet><IPolygonMesh ID='m'/></ChildSet></IPart></Scene>");
    scene.WithFile("s.mesh", kStore).Begin();
    ASSERT_EQ(scene.ChildIds("p").size(), 1U);
    scene.Producer().Dispose("m");
    scene.Producer().Dispose("p");
    scene.Begin();
    EXPECT_TRUE(scene.ChildIds("p").empty());
}

TEST(XMLPolygonMesh, APolygonOfAMeshIsForReadingAlone)
{
    MeshScene test("");
    auto& polygon = const_cast<EditablePolygon&>(PolygonOf(test.mesh, 0));
    auto const before = List(polygon.VertexIndices());
    int const indices[] = {7, 8, 9, 10};
    EXPECT_THROW(polygon.SetVertexIndices(3, indices), GeneralException);
    EXPECT_THROW(polygon.SetNormalIndices(3, indices), GeneralException);
    EXPECT_THROW(polygon.SetTextureVertexIndices(1, 1, indices, 3, indices), GeneralException);
    polygon.Release();
    EXPECT_EQ(List(polygon.VertexIndices()), before);
}

}  // namespace

}  // namespace KVR::Test
