#include "exchange/source/SideFileCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The assembly's scene, imported once; each test has a copy of its own.
class SideFiles : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_original = std::make_unique<TempFolder>();
        ASSERT_EQ(
            ImportModel(std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp", s_original->NarrowPathOf("a.xml"))
                .outcome,
            Outcome::kDone);
    }
    static void TearDownTestSuite() { s_original.reset(); }

    SideFiles() { fs::copy(s_original->Path(), m_folder.Path()); }

    std::string File(char const* name) const { return m_folder.NarrowPathOf(name); }
    std::string Scene() const { return File("a.xml"); }
    std::vector<std::string> Problems() const { return SideFileCheck(Scene()).Problems(); }
    ExportResult Export(bool isStrict) const
    {
        SceneOptions options;
        options.path = Scene();
        options.strict = isStrict;
        return ExportScene(options, File("out.glb"));
    }

    TempFolder m_folder;

private:
    static std::unique_ptr<TempFolder> s_original;
};

std::unique_ptr<TempFolder> SideFiles::s_original;

// A triangle with texture coordinates and a picture of one pixel.
constexpr char kTexturedTriangle[] =
    R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0,"TEXCOORD_0":1},"indices":2,"material":0}]}],
"materials":[{"pbrMetallicRoughness":{"baseColorTexture":{"index":0}}}],"textures":[{"source":0}],
"images":[{"uri":"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGA)"
    R"(WjR9awAAAABJRU5ErkJggg=="}],"buffers":[{"byteLength":68,"uri":"data:application/octet-stream;base64,)"
    R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAIA/AAABAAIAAAA="}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":24},
{"buffer":0,"byteOffset":60,"byteLength":6}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5126,"count":3,"type":"VEC2"},
{"bufferView":2,"componentType":5123,"count":3,"type":"SCALAR"}]})";

void Shorten(std::string const& path)
{
    fs::resize_file(path, fs::file_size(path) - 1);
}

void ChangeOneByte(std::string const& path)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekg(100);
    char const byte = static_cast<char>(file.get() ^ 1);
    file.seekp(100);
    file.put(byte);
}

}  // namespace

TEST_F(SideFiles, OfAnImportAreItsOwn)
{
    EXPECT_THAT(Problems(), IsEmpty());
    EXPECT_THAT(SideFileCheck::PathsOf(Scene()),
                testing::IsSupersetOf({File("a.xml.sab"), File("a.xml.mesh"), File("a.xml.seg"), File("a.xml.ids")}));
    EXPECT_THAT(Export(false).remarks, IsEmpty());
    EXPECT_EQ(Export(true).outcome, Outcome::kDone);
}

TEST(TexturesOfImports, AreSideFilesOfTheScene)
{
    TempFolder const folder;
    folder.Write("t.gltf", kTexturedTriangle);
    std::string const scene = folder.NarrowPathOf("a.xml");
    ASSERT_EQ(ImportModel(folder.NarrowPathOf("t.gltf"), scene).outcome, Outcome::kDone);
    EXPECT_THAT(SideFileCheck(scene).Problems(), IsEmpty());
    fs::remove(folder.NarrowPathOf("a.xml.texture1.png"));
    EXPECT_THAT(SideFileCheck(scene).Problems(), ElementsAre("the scene's side file a.xml.texture1.png is missing"));
}

TEST_F(SideFiles, AreMissingShortOrAnothers)
{
    fs::remove(File("a.xml.sab"));
    Shorten(File("a.xml.mesh"));
    ChangeOneByte(File("a.xml.seg"));
    fs::remove(File("a.xml.ids"));
    fs::create_directory(File("a.xml.ids"));
    EXPECT_THAT(
        Problems(),
        ElementsAre("the scene's side file a.xml.sab is missing",
                    "the scene's side file a.xml.mesh is short, or another scene's: it has 194032 of 194033 bytes",
                    "the scene's side file a.xml.seg is another scene's, or was changed",
                    HasSubstr("the scene's side file a.xml.ids cannot be read")));
    ExportResult const strict = Export(true);
    EXPECT_EQ(strict.outcome, Outcome::kFailed);
    EXPECT_THAT(strict.failure, HasSubstr("a.xml.sab is missing; "));
    EXPECT_THAT(strict.failure, HasSubstr("; and 1 more"));
    EXPECT_FALSE(fs::exists(File("out.glb")));
}

TEST_F(SideFiles, OfAnotherSceneAreToldEvenOfOneSize)
{
    fs::rename(File("a.xml.mesh"), File("b"));
    fs::copy(File("b"), File("a.xml.mesh"));
    EXPECT_THAT(Problems(), IsEmpty());
    std::ofstream(File("a.xml.mesh"), std::ios::app) << "more";
    EXPECT_THAT(Problems(), ElementsAre("the scene's side file a.xml.mesh is another scene's, or was changed"));
}

TEST_F(SideFiles, AnExportRemarksWhatIsWrongWithThem)
{
    fs::remove(File("a.xml.mesh"));
    ExportResult const result = Export(false);
    EXPECT_EQ(result.outcome, Outcome::kDone);
    EXPECT_THAT(result.remarks, testing::Contains("the scene's side file a.xml.mesh is missing"));
    ExportResult const strict = Export(true);
    EXPECT_EQ(strict.outcome, Outcome::kFailed);
    EXPECT_EQ(strict.failure, '"' + Scene() + "\" cannot be read: the scene's side file a.xml.mesh is missing");
}

TEST(SideFileCheck, TellsOfPropertiesThatAreNotTheScenes)
{
    TempFolder const folder;
    folder.Write("a.xml", "<Scene/><?kvr-side-files\n?>");
    EXPECT_THAT(SideFileCheck(folder.NarrowPathOf("a.xml")).Problems(), IsEmpty());
    folder.Write("a.kvrproperty", "<Properties/>");
    EXPECT_THAT(SideFileCheck(folder.NarrowPathOf("a.xml")).Problems(),
                ElementsAre(HasSubstr("a.kvrproperty is another scene's")));
}

TEST(SideFileCheck, FollowsTheNameOfASceneThatIsMoved)
{
    TempFolder const folder;
    std::string const digest =
        " 3 "
        "0000000000000000";
    folder.Write("b.kvrproperty", "abc");
    folder.Write("b.xml", "<Scene/><?kvr-side-files\n  a.kvrproperty" + digest + "\n?>");
    EXPECT_THAT(SideFileCheck::PathsOf(folder.NarrowPathOf("b.xml")),
                ElementsAre(folder.NarrowPathOf("b.kvrproperty")));
    EXPECT_THAT(SideFileCheck(folder.NarrowPathOf("b.xml")).Problems(),
                ElementsAre("the scene's side file b.kvrproperty is another scene's, or was changed"));
    EXPECT_THAT(SideFileCheck(folder.NarrowPathOf("none.xml")).Problems(), IsEmpty());
}

TEST(SideFileCheck, BySizesTakesWhatIsAsLongForWhatWasWritten)
{
    TempFolder const folder;
    folder.Write("a.xml", "<Scene/><?kvr-side-files\n  a.mesh 3 0000000000000000\n?>");
    folder.Write("a.mesh", "abc");
    folder.Write("b.mesh", "abc");
    std::string const scene = folder.NarrowPathOf("a.xml");
    EXPECT_THAT(SideFileCheck(scene, SideFileCheck::Extent::kSizes).Problems(), IsEmpty());
    EXPECT_TRUE(SideFileCheck::HasNotedSize(scene, folder.NarrowPathOf("a.mesh")));
    EXPECT_FALSE(SideFileCheck::HasNotedSize(scene, folder.NarrowPathOf("b.mesh"))) << "not noted";
    EXPECT_FALSE(SideFileCheck::HasNotedSize(scene, "/a.mesh")) << "in another folder";
    folder.Write("a.mesh", "abcd");
    EXPECT_THAT(SideFileCheck(scene, SideFileCheck::Extent::kSizes).Problems(),
                ElementsAre("the scene's side file a.mesh is another scene's, or was changed"));
    EXPECT_FALSE(SideFileCheck::HasNotedSize(scene, folder.NarrowPathOf("a.mesh")));
}

TEST(SideFileCheck, OfASceneWithoutNotesTellsWhatCouldNotBeRead)
{
    TempFolder const folder;
    folder.MakeFolder("f");
    SceneOptions options;
    options.path = UTF8String(folder.Write("scene.xml", R"(<S><SatInfo Path="none.sab"/><SatInfo Path="f"/>
<MeshInfo GenerateMesh="True" Path="none.sab"/><SatInfo Path="f/m"/><IFile ID="f"/></S>)"))
                       .View();
    SceneFile file(options);
    SceneReading const reading = SceneReading::Of(file);
    EXPECT_FALSE(reading.failure);
    EXPECT_TRUE(reading.rootId);
    EXPECT_THAT(reading.sideFileProblems,
                ElementsAre("the scene's side file none.sab is missing", "the scene's side file f cannot be read",
                            "the scene's side file " + folder.NarrowPathOf("f/m") + " is missing"));
    options.strict = true;
    SceneFile again(options);
    SceneReading const strict = SceneReading::Of(again);
    ASSERT_TRUE(strict.failure);
    EXPECT_THAT(*strict.failure->message, HasSubstr("none.sab is missing"));
    EXPECT_THAT(strict.sideFileProblems, IsEmpty());
}

}  // namespace KVR::Test
