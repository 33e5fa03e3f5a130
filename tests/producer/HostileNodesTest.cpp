// Processing instructions, entity references, comments and the like that bear the names of elements, at every place.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr char const* kNames[] = {"Scene",
                                  "SatInfo",
                                  "GeometryInfo",
                                  "MeshSegmentInfo",
                                  "MeshInfo",
                                  "VitreolMaterialInfo",
                                  "SubObjectPersistentIdInfo",
                                  "IUniverse",
                                  "ViewData",
                                  "UpVector",
                                  "FrontVector",
                                  "DefaultCurveColor",
                                  "DefaultSurfaceColor",
                                  "CustomData",
                                  "CustomDataItem",
                                  "ID",
                                  "IFile",
                                  "IAnnotationCallout",
                                  "IAnnotationCalloutElement",
                                  "IAssembly",
                                  "IPart",
                                  "IInstance",
                                  "IBrep",
                                  "IPoint",
                                  "IPolygonMesh",
                                  "IGeometricSet",
                                  "IExtensionGeometry",
                                  "ICurve",
                                  "ISketch",
                                  "IPointCloud",
                                  "IWorkPoint",
                                  "IWorkAxis",
                                  "IWorkPlane",
                                  "ChangeKey",
                                  "Unit",
                                  "Tolerance",
                                  "UnitAndTolerance",
                                  "FileProperties",
                                  "Title",
                                  "Author",
                                  "CreationDate",
                                  "MassUnit",
                                  "Revision",
                                  "PartNumber",
                                  "CustomProperties",
                                  "CustomProperty",
                                  "ExtensionData",
                                  "RefFiles",
                                  "RefFile",
                                  "ChildSet",
                                  "Child",
                                  "Reference",
                                  "Styles",
                                  "NetStyles",
                                  "StyleRef",
                                  "CameraSet",
                                  "CameraRef",
                                  "AttributeSet",
                                  "CrossLevelAttributes",
                                  "EntityStyles",
                                  "Visibilities",
                                  "EntityVisibility",
                                  "Transformations",
                                  "EntityTransformation",
                                  "SubObjectPersistentIds"};

// Everything that any of the elements might want.
constexpr char const* kAttributes =
    "ID='evil' Label='evil' IsRoot='1' Type='IAssembly' Path='none' Key='evil' Value='evil' "
    "RefId='evil' RefPath='evil' LengthUnit='kUnitType_Hour' Visibility='1' "
    "GenerateMesh='True' Transformation='9'";

std::string AnswersOf(std::string const& text, std::string const& declarations = "")
{
    TestScene scene(declarations.empty() ? text : "<!DOCTYPE Scene [" + declarations + "]>" + text);
    WriteSideFiles(scene);
    scene.Begin();
    EXPECT_FALSE(scene.Has("evil"));
    return WalkScene(scene.Producer(), FullSceneIds()).text;
}

std::string Instructions()
{
    std::string text;
    for (char const* const name : kNames)
        text += std::string("<?") + name + " " + kAttributes + "?>";
    return text;
}

std::string References()
{
    std::string text;
    for (char const* const name : kNames)
        text += std::string("&") + name + ";";
    return text;
}

// An entity for each name: the element of that name, or nothing.
std::string Declarations(bool withElements)
{
    std::string text;
    for (char const* const name : kNames)
        text += std::string("<!ENTITY ") + name + " \"" +
                (withElements ? std::string("<") + name + " " + kAttributes + "/>" : "") + "\">";
    return text;
}

}  // namespace

TEST(HostileNodes, InstructionsNamedLikeEveryElementAtEveryPlaceChangeNothing)
{
    EXPECT_EQ(AnswersOf(Replaced(MarkedFullScene(), "@", Instructions())), AnswersOf(FullScene()));
}

TEST(HostileNodes, InstructionsAroundTheRootChangeNothing)
{
    EXPECT_EQ(AnswersOf(Instructions() + FullScene() + Instructions()), AnswersOf(FullScene()));
}

TEST(HostileNodes, CommentsThatHoldElementsChangeNothing)
{
    std::string comment = "<!--";
    for (char const* const name : kNames)
        comment += std::string("<") + name + " " + kAttributes + "/>";
    EXPECT_EQ(AnswersOf(Replaced(MarkedFullScene(), "@", comment + "-->")), AnswersOf(FullScene()));
}

TEST(HostileNodes, ReferencesToEntitiesNamedLikeEveryElementAtEveryPlaceMakeNoObject)
{
    EXPECT_EQ(AnswersOf(Replaced(MarkedFullScene(), "@", References()), Declarations(true)), AnswersOf(FullScene()));
}

TEST(HostileNodes, ReferencesToEmptyEntitiesChangeNothing)
{
    EXPECT_EQ(AnswersOf(Replaced(MarkedFullScene(), "@", References()), Declarations(false)), AnswersOf(FullScene()));
}

TEST(HostileNodes, AnEntityInTextIsPartOfTheText)
{
    TestScene scene(R"(<!DOCTYPE S [<!ENTITY e "<x>in</x> an entity">]><S><IPart ID="p" Label="&e2;"><ChangeKey>text
        &e;</ChangeKey></IPart></S>)");
    EXPECT_FALSE(Opens(scene)) << "one of them is not declared";
    TestScene declared(R"(<!DOCTYPE S [<!ENTITY e "<x>in</x> an entity"><!ENTITY e2 "label">]><S>
        <IPart ID="p" Label="a &e2;"><ChangeKey>text &e;</ChangeKey></IPart></S>)");
    declared.Begin();
    UTF8String key;
    ASSERT_EQ(declared.Get<IPart>("p").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), "text in an entity");
    EXPECT_EQ(Text(declared.Get<IPart>("p").Label()), "a label");
}

TEST(HostileNodes, CharacterDataThatLooksLikeElementsChangesNothing)
{
    std::string data = "<![CDATA[";
    for (char const* const name : kNames)
        data += std::string("<") + name + " " + kAttributes + "/>";
    data += "]]>";
    // Not where the text itself is asked for.
    std::string scene = Replaced(MarkedFullScene(), "@key@", "key");
    scene = Replaced(scene, "A @title", "A title");
    EXPECT_EQ(AnswersOf(Replaced(scene, "@", data)), AnswersOf(FullScene()));
}

TEST(HostileNodes, AttributesFromADocumentTypeCountLikeWritten)
{
    TestScene scene(R"(<!DOCTYPE S [<!ATTLIST IPart Label CDATA "default" IsSingleUnderRoot CDATA "1">]>
        <S><IPart ID="p"/><IPart ID="q" Label="own"/></S>)");
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IPart>("p").Label()), "default");
    EXPECT_TRUE(scene.Get<IPart>("p").IsSingleUnderRoot());
    EXPECT_EQ(Text(scene.Get<IPart>("q").Label()), "own");
}

TEST(HostileNodes, EveryNodeThatIsNoElementUnderTheRootIsPassedOver)
{
    TestScene scene(R"(<!DOCTYPE S [<!ENTITY IPart "<IPart ID='a'/>"><!NOTATION n SYSTEM "n">]>
        <S>&IPart;<?IPart ID="b"?><!--IPart--><![CDATA[<IPart ID="c"/>]]>&#65;<IPart ID="p"/></S>)");
    scene.Begin();
    for (char const* const id : {"a", "b", "c", ""})
        EXPECT_FALSE(scene.Has(id)) << id;
    EXPECT_TRUE(scene.Has("p"));
}

}  // namespace KVR::Test
