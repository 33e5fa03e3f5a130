// What docs/hosting.md says about the life of a producer, new ids and events, and no other test holds by that name.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <filesystem>
#include <memory>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "authoring/VitreolAssetWriter.h"
#include "framework/kernel/entity.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string StoreOfABox(char const* dataId)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.back()->AddDataId(dataId);
    return StoreBytes(entities, false);
}

std::string Damaged(std::string bytes)
{
    bytes[16] = static_cast<char>(bytes[16] ^ 1);
    return bytes;
}

// Keeps clones of what is posted, and where the first ones were.
struct Events final : EventManager
{
    void PostEvent(Event* event) const override
    {
        auto const* const failure = dynamic_cast<ExceptionEvent*>(event);
        ASSERT_NE(failure, nullptr);
        clones.emplace_back(dynamic_cast<ExceptionEvent*>(failure->Clone()));
    }
    mutable std::vector<std::unique_ptr<ExceptionEvent>> clones;
};

FileException const& FailureOf(ExceptionEvent const& event)
{
    return dynamic_cast<FileException const&>(event.CarriedException());
}

constexpr char kInsecureScene[] = R"(<S><SatInfo Path="./s.sab"/><IBrep ID="b"/></S>)";

}  // namespace

TEST(HostingLife, BeginProcessAfterTheEndHasNoEffect)
{
    TestScene scene("<S><IPart ID='p'/></S>");
    EXPECT_TRUE(scene.Begin().Has("p"));
    scene.Producer().EndProcess();
    scene.Producer().EndProcess();
    EXPECT_NO_THROW(scene.Begin());
    EXPECT_FALSE(scene.Has("p"));
}

TEST(HostingLife, TheRootMayHaveNoIdBeAnotherObjectOrNone)
{
    TestScene none(R"(<S><IFile IsRoot="1"/></S>)");
    none.Begin();
    EXPECT_TRUE(none.Producer().RootObjectId().Id().IsEmpty());
    TestScene other(
        R"(<S><IFile ID="a" IsRoot="1"><AttributeSet><LayerSet><ILayer ID="a"/></LayerSet></AttributeSet></IFile></S>)");
    other.Begin();
    UTF8String const root = other.Producer().RootObjectId().Id();
    EXPECT_NE(dynamic_cast<ILayer*>(other.Producer().Load(root)), nullptr);
    other.Producer().Dispose(root);
    EXPECT_EQ(other.Producer().Load(root), nullptr);
}

TEST(HostingLife, NothingIsReadLaterButTheImageOfATexture)
{
    TempFolder const folder;
    std::string const image = folder.NarrowPathOf("image");
    TestScene scene(
        "<S><SatInfo Path='s.sab'/><IBrep ID='b'/><IFile ID='f'><AttributeSet><TextureSet><IMaterialTexture "
        "ID='t' TempFilePath='" +
        image + "'/></TextureSet></AttributeSet></IFile></S>");
    scene.WithFile("s.sab", StoreOfABox("b")).Begin();
    std::filesystem::remove_all(scene.Folder());
    ASSERT_NE(scene.Get<IBrep>("b").Body(), nullptr);
    EXPECT_EQ(scene.Get<IBrep>("b").Body()->FaceList().size(), 6U);
    folder.Write("image", "made later");
    char bytes[4] = {};
    EXPECT_EQ(scene.Get<IMaterialTexture>("t").EmbeddedTextureImage(4, bytes), kIsValueSpecified_Yes);
    EXPECT_EQ(std::string(bytes, 4), "made");
}

TEST(HostingAnswers, ThreeGettersDifferWhenTheyAreNotSpecified)
{
    TestScene scene(R"(<S><IUniverse><CustomData><CustomDataItem Type="7" Key="k"/></CustomData></IUniverse>
                       <IAnnotationCallout ID="n"><IText TextJustification="0"/></IAnnotationCallout></S>)");
    scene.Begin();
    int justification = 9;
    EXPECT_EQ(scene.Get<IAnnotationCallout>("n").Text()->TextJustification(justification), kIsValueSpecified_No);
    EXPECT_EQ(justification, 0);
    UTF8String key;
    Variant value;
    EXPECT_EQ(scene.Producer().LoadUniverse()->CustomDataAt(0, key, value), kIsValueSpecified_No);
    EXPECT_EQ(Text(key), "k");
    EXPECT_EQ(value.Kind(), Variant::kKind_None);
    TempFolder const folder;
    folder.Write("image", "ab");
    TestScene textured("<S><IFile ID='f'><AttributeSet><TextureSet><IMaterialTexture ID='t' TempFilePath='" +
                       folder.NarrowPathOf("image") + "'/></TextureSet></AttributeSet></IFile></S>");
    char bytes[4] = "xyz";
    EXPECT_EQ(textured.Begin().Get<IMaterialTexture>("t").EmbeddedTextureImage(3, bytes), kIsValueSpecified_No);
    EXPECT_EQ(std::string(bytes), "abz");
}

TEST(HostingAnswers, ABodyReportsNoLengthUnitAndAFileThatOfItsDisplayAlone)
{
    TestScene scene(R"(<S><IBrep ID="b"><Unit LengthUnit="kUnitType_Meter" DisplayLengthUnit="kUnitType_Inch"/></IBrep>
                       <IPoint ID="p"/></S>)");
    scene.Begin();
    UnitTypeEnum unit = kUnitType_Mile;
    EXPECT_EQ(scene.Get<IBrep>("b").LengthUnit(unit), kIsValueSpecified_No);
    EXPECT_EQ(unit, kUnitType_Mile);
    EXPECT_EQ(scene.Get<IPoint>("p").LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
}

TEST(HostingNewIds, LevelsOfDetailAndFeatureOverridesKeepTheirs)
{
    TestScene scene(R"(<S><MeshInfo GenerateMesh="True" Path="s.mesh"/><IAssembly ID="a" Label=""><AttributeSet><LodSet>
        <ILod ID="coarse"/></LodSet></AttributeSet><ChildSet><IAssemblyFeatureOverride ID="override"><ChildSet>
        <IPolygonMesh ID="m" LODID="coarse"/></ChildSet></IAssemblyFeatureOverride></ChildSet></IAssembly></S>)");
    scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + TriangleRecord("m")).WithPrefix("P").Begin();
    EXPECT_TRUE(scene.Has("coarse"));
    auto const& featureOverride = scene.Get<IAssemblyFeatureOverride>("override");
    UTF8String const mesh = featureOverride.ChildAt(0).Id();
    EXPECT_EQ(Text(mesh).substr(0, 1), "P");
    UTF8String level;
    EXPECT_EQ(scene.Get<IPolygonMesh>(mesh.Value()).LODId(level), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(level), "coarse");
}

TEST(HostingNewIds, BodiesAndMeshesAreFoundUnderTheirOldOnes)
{
    TestScene scene(R"(<S><SatInfo Path="s.sab"/><MeshInfo GenerateMesh="True" Path="s.mesh"/>
        <IPart ID="part" Label=""><ChildSet><IBrep ID="b"/><IPolygonMesh ID="m"/></ChildSet></IPart></S>)");
    scene.WithFile("s.sab", StoreOfABox("b")).WithFile("s.mesh", MeshInfoHeader(1).Bytes() + TriangleRecord("m"));
    scene.WithPrefix("P").Begin();
    EXPECT_THAT(scene.ChildIds("P1"), ElementsAre("P2", "P3"));
    EXPECT_NE(scene.Get<IBrep>("P2").Body(), nullptr);
    EXPECT_EQ(scene.Get<IPolygonMesh>("P3").PolygonCount(), 1U);
}

// The side files name some objects by their old ids and some by their new ones; which are found is the point.
TEST(HostingNewIds, CurvesOfStoresAssetsAndPropertiesAreFoundUnderTheirNewOnes)
{
    TestScene scene(R"(<S><MeshInfo GenerateMesh="True" Path="s.mesh"/>
        <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="s.assets"/><IUniverse/>
        <IPart ID="a" Label=""><AttributeSet><StyleSet><IRenderStyle ID="x"/><IRenderStyle ID="y"/></StyleSet></AttributeSet>
        <ChildSet><ICurve ID="c"/><ICurve ID="d"/><IPolygonMesh ID="m"/></ChildSet></IPart></S>)");
    // a, x, y, c, d and m become P1 to P6.
    Authoring::MeshStoreWriter store(Wide((scene.Folder() + "/s.mesh").c_str()), Authoring::MeshStoreLayout::kMeshInfo);
    for (char const* const id : {"c", "P5"})
        store.Curve(id, {Authoring::LineRecord{{}, {1, 0, 0}, 0, 1}});
    store.BeginMesh("m", {});
    store.EndMesh();
    store.Finish();
    Authoring::VitreolAssetWriter assets(Wide((scene.Folder() + "/s.assets").c_str()));
    for (char const* const id : {"x", "P3"})
        assets.Asset(id, "t", {});
    assets.Finish();
    scene.WithFile("scene.kvrproperty", "<P><Property ID='old' ObjectID='m'/><Property ID='new' ObjectID='P6'/></P>");
    scene.WithPrefix("P").Begin();
    EXPECT_THAT(scene.ChildIds("P1"), ElementsAre("P5", "P6"));
    EXPECT_EQ(dynamic_cast<IVitreolRenderStyle*>(scene.Producer().Load("P2")), nullptr);
    EXPECT_NE(scene.Get<IVitreolRenderStyle>("P3").SerializedAsset(), nullptr);
    EXPECT_THAT(Ids(scene.Get<IPolygonMesh>("P6").PropertyIds()), ElementsAre("new"));
}

TEST(HostingOptions, WithoutAnyNoInsecureStoreIsDecoded)
{
    TempFolder const folder;
    folder.Write("s.sab", Damaged(StoreOfABox("b")));
    XMLProducer producer(folder.Write("scene.xml", kInsecureScene), nullptr);
    producer.BeginProcess(IdSet(), nullptr, nullptr);
    auto const* const body = dynamic_cast<IBrep*>(producer.Load("b"));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->Body(), nullptr);
}

TEST(HostingEvents, AnInsecureStoreIsPostedAndNeverThrown)
{
    for (bool const isAllowed : {false, true})
    {
        Events events;
        {
            TestScene scene(kInsecureScene);
            scene.Options().SetWantRestoreInsecureGMKFiles(isAllowed);
            EXPECT_NO_THROW(scene.WithFile("s.sab", Damaged(StoreOfABox("b"))).Begin(&events));
            EXPECT_EQ(scene.Get<IBrep>("b").Body() != nullptr, isAllowed);
        }
        // The clone outlives the event and its producer.
        ASSERT_EQ(events.clones.size(), 1U);
        EXPECT_EQ(events.clones[0]->Type(), 0);
        FileException const& failure = FailureOf(*events.clones[0]);
        EXPECT_EQ(failure.ErrorCode(), isAllowed ? 15 : 16);
        EXPECT_EQ(Text(failure.FileName()), "./s.sab") << "as the scene writes it";
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        EXPECT_EQ(failure.Reporter(reporter), kIsValueSpecified_Yes);
        EXPECT_EQ(reporter, kComponentRole_Producer);
    }
}

TEST(HostingEvents, AWholeStoreAndOneThatIsNoStorePostNothing)
{
    Events events;
    for (std::string const& bytes : {StoreOfABox("b"), std::string("no store"), std::string()})
        TestScene(kInsecureScene).WithFile("s.sab", bytes).Begin(&events);
    EXPECT_TRUE(events.clones.empty());
}

}  // namespace KVR::Test
