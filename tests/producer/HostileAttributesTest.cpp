// Elements without the attributes that the format wants of them: a missing text is an empty one.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

// A part whose element is empty but for the given content, in a scene of its own.
IPart& Part(TestScene& scene)
{
    scene.Begin();
    return scene.Get<IPart>("p");
}

}  // namespace

TEST(HostileAttributes, ObjectsWithoutAnyAttributeHaveTheEmptyId)
{
    for (char const* const name : {"IFile", "IAssembly", "IPart"})
    {
        TestScene scene(std::string("<S><") + name + "/></S>");
        scene.Begin();
        IObject& object = scene.Get<IObject>("");
        EXPECT_EQ(Text(object.Label()), "") << name;
        UTF8String text = "untouched";
        EXPECT_EQ(object.VersionPersistentId(text), kIsValueSpecified_No);
        EXPECT_EQ(object.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_No);
        EXPECT_EQ(Text(text), "untouched");
        EXPECT_EQ(WalkScene(scene.Producer(), {""}).Objects(), 1U) << name;
    }
}

TEST(HostileAttributes, AnInstanceWithoutAnyAttributeIsKeptUnderTheEmptyId)
{
    TestScene scene(
        "<S><IAssembly ID='a'><ChildSet><IInstance><Child ID='p'/></IInstance></ChildSet></IAssembly>"
        "<IPart ID='p'/></S>");
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), List{""});
    EXPECT_FALSE(scene.Get<IInstance>("").IsVisible());
    EXPECT_FALSE(scene.Get<IInstance>("").IsNetVisible());
}

TEST(HostileAttributes, AnInstanceWithoutTargetMakesNoObject)
{
    for (char const* const content :
         {"", "<Child/>", "<Child ID=''/>", "<Child Transformation='1'/>", "<Child id='p'/>"})
    {
        TestScene scene(std::string("<S><IInstance ID='i'>") + content + "</IInstance><IPart ID='p'/></S>");
        scene.Begin();
        EXPECT_FALSE(scene.Has("i")) << content;
        EXPECT_TRUE(scene.Has("p"));
    }
}

TEST(HostileAttributes, AReferenceWithoutIdMeansTheEmptyOne)
{
    TestScene scene("<S><IFile ID='f'><ChildSet><C/></ChildSet></IFile><IPart Label='nameless'/></S>");
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("f"), List{""});
    EXPECT_EQ(Text(scene.Get<IPart>("").Label()), "nameless");
    TestScene instance("<S><IInstance ID='i'><Child/></IInstance><IPart Label='nameless'/></S>");
    instance.Begin();
    EXPECT_EQ(Text(instance.Get<IInstance>("i").TargetId().Id()), "");
}

TEST(HostileAttributes, AFileReferenceNeedsBothOfItsAttributes)
{
    TestScene scene(
        "<S><IFile ID='f'><RefFiles><R/><R RefId='a'/><R RefPath='b'/><R RefId='' RefPath=''/>"
        "<R RefId='c' RefPath='d'/></RefFiles></IFile></S>");
    scene.Begin();
    EXPECT_EQ(scene.Get<IFile>("f").RefFileCount(), 2U) << "empty ones are there";
}

TEST(HostileAttributes, InfoSectionsWithoutAnyDoNoHarm)
{
    TestScene scene(
        "<S><SatInfo/><GeometryInfo/><MeshSegmentInfo/><MeshInfo/><VitreolMaterialInfo/>"
        "<SubObjectPersistentIdInfo/><GeometryInfo GenerateGeometry='True'/>"
        "<MeshSegmentInfo GenerateMeshSegment='True'/><MeshInfo GenerateMesh='True'/>"
        "<VitreolMaterialInfo GenerateSerializedVitreol='True'/>"
        "<SubObjectPersistentIdInfo GenerateSubObjectPersistentId='True'/><IPart ID='p'/></S>");
    EXPECT_TRUE(Opens(scene));
    EXPECT_TRUE(scene.Has("p"));
}

TEST(HostileAttributes, CustomDataWithoutThemHasNoValue)
{
    TestScene scene(
        "<S><IUniverse><CustomData><CustomDataItem/><CustomDataItem Type=''/><CustomDataItem Type='5'/>"
        "<CustomDataItem Type='8' Key='blob'/><CustomDataItem Type='9' Key='ids'><ID/></CustomDataItem>"
        "</CustomData><DefaultCurveColor/><ViewData><UpVector/></ViewData></IUniverse></S>");
    scene.Begin();
    IUniverse const& universe = *scene.Producer().LoadUniverse();
    ASSERT_EQ(universe.CustomDataCount(), 3U) << "those without a type are not listed";
    UTF8String key = "untouched";
    Variant value;
    ASSERT_EQ(universe.CustomDataAt(0, key, value), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), "");
    ASSERT_NE(value.AStringValue(), nullptr);
    EXPECT_EQ(Text(*value.AStringValue()), "");
    EXPECT_EQ(universe.CustomDataAt(1, key, value), kIsValueSpecified_No);
    EXPECT_EQ(Text(key), "blob");
    ASSERT_EQ(universe.CustomDataAt(2, key, value), kIsValueSpecified_Yes);
    ASSERT_NE(value.IdSetValue(), nullptr);
    EXPECT_EQ(Ids(*value.IdSetValue()), List{""});
    Color color;
    EXPECT_EQ(universe.DefaultCurveColor(color), kIsValueSpecified_No);
}

TEST(HostileAttributes, ABlobWithoutAPathCannotBeRead)
{
    TestScene scene(
        "<S><IUniverse><CustomData><CustomDataItem Type='8' Key='k' BlobBufferSize='1'/></CustomData>"
        "</IUniverse></S>");
    EXPECT_FALSE(Opens(scene));
    TestScene empty(
        "<S><IUniverse><CustomData><CustomDataItem Type='8' Key='k' BlobBufferSize='0'/></CustomData>"
        "</IUniverse></S>");
    EXPECT_TRUE(Opens(empty)) << "no byte was asked for";
    UTF8String key;
    Variant value;
    ASSERT_EQ(empty.Producer().LoadUniverse()->CustomDataAt(0, key, value), kIsValueSpecified_Yes);
    ASSERT_NE(value.BlobValue(), nullptr);
    EXPECT_EQ(value.BlobValue()->Size(), 0U);
}

TEST(HostileAttributes, OfCommonElementsLeaveWhatTheyWouldHaveSet)
{
    TestScene scene(
        "<S><IPart ID='p'><Unit/><UnitAndTolerance/><Styles><StyleRef/></Styles><ExtensionData/>"
        "<FileProperties><CustomProperties><CustomProperty/></CustomProperties><ViewData/></FileProperties>"
        "<ChildSet><Child/></ChildSet><ChangeKey/></IPart></S>");
    IPart const& part = Part(scene);
    UnitTypeEnum unit = kUnitType_Mile;
    EXPECT_EQ(part.LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
    EXPECT_TRUE(part.Styles().IsEmpty());
    EXPECT_EQ(part.ChildCount(), 0U);
    ExtensionDataContent content;
    EXPECT_EQ(part.ExtensionDataByTypeId("", content), kIsValueSpecified_Yes) << "one of the empty type";
    ASSERT_EQ(part.FileProperties()->CustomPropertyCount(), 1U);
    CustomProperty property;
    EXPECT_EQ(part.FileProperties()->CustomPropertyAt(0, property), kIsValueSpecified_Yes);
    EXPECT_EQ(property.Type(), kPropertyType_String);
    EXPECT_EQ(Text(property.Name()), "");
}

TEST(HostileAttributes, OfCrossLevelElementsLeaveEmptyPaths)
{
    TestScene scene(
        "<S><IAssembly ID='a'><CrossLevelAttributes><Styles><EntityStyles/></Styles><Visibilities>"
        "<EntityVisibility/></Visibilities><Transformations><EntityTransformation/></Transformations>"
        "</CrossLevelAttributes></IAssembly></S>");
    scene.Begin();
    IAssembly const& assembly = scene.Get<IAssembly>("a");
    EXPECT_EQ(assembly.CrossLevelStyleCount(), 0U) << "styles without a path are passed over";
    ASSERT_EQ(assembly.CrossLevelVisibilityCount(), 1U);
    ASSERT_EQ(assembly.CrossLevelTransformCount(), 1U);
    IdSet path;
    bool visible = true;
    assembly.CrossLevelVisibilityAt(0, path, visible);
    EXPECT_TRUE(path.IsEmpty());
    EXPECT_FALSE(visible);
}

TEST(HostileAttributes, EveryOneTakenOutInTurnDoesNoHarm)
{
    std::string const whole = FullScene();
    int cases = 0;
    // Every attribute: a blank or a line end, a name, and a value in quotes.
    for (auto at = whole.find("=\""); at != std::string::npos; at = whole.find("=\"", at + 1), ++cases)
    {
        auto const start = whole.find_last_of(" \n", at);
        auto const end = whole.find('"', at + 2) + 1;
        std::string const without = whole.substr(0, start) + whole.substr(end);
        TestScene scene(without);
        WriteSideFiles(scene);
        bool const isBlob = whole.substr(start, end - start) == " Path=\"blob.bin\"";
        ASSERT_EQ(Opens(scene), !isBlob) << without;
        SceneAnswers const answers = WalkScene(scene.Producer(), FullSceneIds());
        ASSERT_EQ(answers.Objects() > 0, !isBlob) << without;
    }
    EXPECT_GT(cases, 100);
}

}  // namespace KVR::Test
