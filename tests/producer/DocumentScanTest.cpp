#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "framework/xml_util/DocumentParser.h"
#include "framework/xml_util/FileInputSource.h"
#include "framework/xml_util/XMLPlatform.h"
#include "producer/DocumentScan.h"
#include "producer/ObjectNodeIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

double CurveRed(TestScene& scene)
{
    Color color;
    IUniverse const* const universe = scene.Producer().LoadUniverse();
    if (!universe || universe->DefaultCurveColor(color) != kIsValueSpecified_Yes)
        return -1.0;
    return color.Red();
}

// Whether the scan noted an element of that name and had it read: reading it again answers false then, while an id that
// was never noted counts as read.
bool IsNoted(std::string const& name)
{
    XMLPlatformScope const platform;
    TempFolder const folder;
    UTF16String const path = folder.Write("scene.xml", "<S><" + name + " ID='x'/></S>");
    std::unique_ptr<xercesc::XercesDOMParser> const parser = MakeDocumentParser();
    parser->parse(FileInputSource(path));
    XMLProducerImpl producer(path, nullptr);
    ScanDocument(parser.get(), path, producer);
    return !producer.objectNodeIndex->ReadNodeById("x");
}

std::string Universe(std::string const& red)
{
    return "<IUniverse><DefaultCurveColor FractionRed='" + red + "' FractionGreen='0' FractionBlue='0'/></IUniverse>";
}

}  // namespace

TEST(DocumentScan, OfADocumentWithoutChildrenLeavesAnEmptyRegistryAndNoRootId)
{
    for (char const* const text : {"<Scene/>", "<Scene></Scene>", "<Scene> <!-- --> </Scene>"})
    {
        TestScene scene(text);
        scene.Begin();
        SceneAnswers const answers = WalkScene(scene.Producer(), {"", "Scene"});
        EXPECT_EQ(answers.Objects(), 0U);
        EXPECT_EQ(answers.absent, 2U);
        EXPECT_THROW(scene.Producer().RootObjectId(), GeneralException);
    }
}

TEST(DocumentScan, NeverTestsTheRootsName)
{
    for (char const* const name : {"Scene", "x", "IPart", "\xC3\xA4", "n:Scene"})
    {
        TestScene scene(std::string("<") + name + " xmlns:n='urn:n' ID='r'><IPart ID='p'/></" + name + ">");
        scene.Begin();
        EXPECT_TRUE(scene.Has("p")) << name;
        EXPECT_FALSE(scene.Has("r")) << name;
    }
}

TEST(DocumentScan, SkipsAnUnknownChildOfTheRootInSilence)
{
    TestScene scene(R"(<Scene>text<Unknown ID="a"/><Group><IPart ID="b"/></Group><!--<IPart ID="c"/>--><ipart ID="d"/>
        <IPart2 ID="e"/><IPar ID="f"/><n:IPart xmlns:n="urn:n" ID="g"/><![CDATA[<IPart ID="h"/>]]><?IPart ID="i"?>
        <IPart ID="p"/></Scene>)");
    scene.Begin();
    for (char const* const id : {"a", "b", "c", "d", "e", "f", "g", "h", "i"})
        EXPECT_FALSE(scene.Has(id)) << id;
    EXPECT_TRUE(scene.Has("p"));
}

TEST(DocumentScan, LooksAtNamesAsWrittenAndNotAtNamespaces)
{
    TestScene scene(R"(<Scene xmlns="urn:default"><IPart ID="p" xmlns="urn:other"/><IPart xmlns="" ID="q"/></Scene>)");
    scene.Begin();
    EXPECT_TRUE(scene.Has("p"));
    EXPECT_TRUE(scene.Has("q"));
}

TEST(DocumentScan, NotesElementsByTheirExactNames)
{
    for (char const* const name : {"IFile", "IAssembly", "IPart", "IInstance", "IPolygonMesh"})
        EXPECT_TRUE(IsNoted(name)) << name;
    for (char const* const name : {"GroupSet", "IUniverse", "SatInfo", "MeshInfo", "IView", "ICamera", "ILayer", "File",
                                   "IRenderStyle", "IAssemblyFeatureOverride", "ifile", "IFILE", "IParts", "Child"})
        EXPECT_FALSE(IsNoted(name)) << name;
}

TEST(DocumentScan, SkipsAnAnnotationElementDirectlyUnderTheRoot)
{
    EXPECT_FALSE(IsNoted("IAnnotationCalloutElement"));
    TestScene scene(R"(<Scene><IAnnotationCalloutElement ID="e"/></Scene>)");
    scene.Begin();
    EXPECT_FALSE(scene.Has("e"));
}

TEST(DocumentScan, ReadsAUniverseThatStandsBehindAllObjects)
{
    TestScene scene("<Scene><IFile ID='f'/><IPart ID='p'/>" + Universe("0.5") + "</Scene>");
    scene.Begin();
    EXPECT_EQ(CurveRed(scene), 0.5);
    EXPECT_TRUE(scene.Has("f"));
    EXPECT_TRUE(scene.Has("p"));
}

TEST(DocumentScan, ReadsTheUniverseBeforeAnyObject)
{
    // The universe's blob is missing, so that the scan ends with it: no object was read by then.
    TestScene scene(R"(<Scene><IPart ID="p"/><IUniverse><CustomData>
        <CustomDataItem Type="8" Key="k" Path="none" BlobBufferSize="1"/></CustomData></IUniverse></Scene>)");
    EXPECT_THROW(scene.Begin(), FileException);
    EXPECT_FALSE(scene.Has("p"));
}

TEST(DocumentScan, LetsTheLastOfSeveralUniversesWin)
{
    TestScene scene("<Scene>" + Universe("0.25") + "<IPart ID='p'/>" + Universe("0.5") + "<IUniverse/>" +
                    Universe("0.75") + "</Scene>");
    scene.Begin();
    EXPECT_EQ(CurveRed(scene), 0.75);
    TestScene emptyLast("<Scene>" + Universe("0.25") + "<IUniverse/></Scene>");
    emptyLast.Begin();
    EXPECT_EQ(CurveRed(emptyLast), -1.0) << "nothing is merged";
}

TEST(DocumentScan, PassesAnExceptionOfAReaderOnToTheHost)
{
    TestScene scene(R"(<Scene><IUniverse><CustomData>
        <CustomDataItem Type="8" Key="k" Path="short.bin" BlobBufferSize="10"/></CustomData></IUniverse></Scene>)");
    scene.WithFile("short.bin", "123456789");
    try
    {
        scene.Begin();
        FAIL() << "the blob is shorter than the scene says";
    }
    catch (FileException const& exception)
    {
        EXPECT_EQ(Text(exception.FileName()), scene.Folder() + "/short.bin");
        EXPECT_EQ(exception.ErrorCode(), 0);
    }
    scene.WithFile("short.bin", "1234567890");
    EXPECT_NO_THROW(scene.Begin()) << "the document is still parsed, and can be scanned";
    EXPECT_NE(scene.Producer().LoadUniverse(), nullptr);
}

TEST(DocumentScan, GivesTheSameWhateverTheOrderOfTheRootsChildren)
{
    List const children = {
        R"(<IFile ID="f" IsRoot="1"><ChildSet><A ID="a"/></ChildSet></IFile>)",
        R"(<IAssembly ID="a" Label="A"><ChildSet><IInstance ID="i"><Child ID="p"/></IInstance></ChildSet></IAssembly>)",
        R"(<IPart ID="p" Label="P"/>)",
        Universe("0.5"),
        R"(<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="none"/>)",
    };
    std::vector<std::size_t> order = {0, 1, 2, 3, 4};
    std::string expected;
    int orders = 0;
    do
    {
        std::string text = "<Scene>";
        for (std::size_t const i : order)
            text += children[i];
        TestScene scene(text + "</Scene>");
        scene.Begin();
        SceneAnswers const answers = WalkScene(scene.Producer());
        EXPECT_EQ(answers.Objects(), 4U);
        if (expected.empty())
            expected = answers.text;
        ASSERT_EQ(answers.text, expected) << text;
        ++orders;
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(orders, 120);
}

}  // namespace KVR::Test
