#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeSphere.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "authoring/KernelStoreWriter.h"
#include "exchange/ExportScene.h"
#include "tests/exchange/ExportScene.h"
#include "tests/exchange/GltfFile.h"
#include "tests/host/ResourceLimit.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

std::vector<std::string> NamesIn(std::string const& folder)
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

std::string const kFormats[] = {"glb", "gltf", "stl", "obj", "ply"};

std::string SceneText()
{
    return UnderTop(Instance("i", "p")) + PartOfMesh();
}

// A mesh that takes more than the files may.
void PutLargeMesh(ExportScene& scene)
{
    std::vector<double> vertices;
    std::vector<std::vector<std::uint64_t>> polygons;
    for (std::uint64_t i = 0; i < 5000; ++i)
    {
        auto const x = static_cast<double>(i);
        vertices.insert(vertices.end(), {x, 0, 0, x + 0.5, 0, 0, x, 2, 0});
        polygons.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    scene.Mesh("m", vertices, polygons);
}

// One sentence on standard error, and nothing on the other.
void ExpectOneSentence(ToolRun const& run)
{
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.error, StartsWith("kvr: "));
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
}

}  // namespace

TEST(ExportFailuresTest, AnExtensionOfNoFormatIsRefusedWithThoseThatThereAre)
{
    ExportScene scene;
    scene.Triangle("m");
    for (std::string const name : {"out.xyz", "out", "glb"})
    {
        ToolRun const run = scene.Export(SceneText(), name);
        EXPECT_EQ(run.status, 2);
        ExpectOneSentence(run);
        EXPECT_THAT(run.error, HasSubstr(".glb .gltf .stl .obj .ply"));
        EXPECT_FALSE(std::filesystem::exists(scene.PathOf(name)));
    }
}

TEST(ExportFailuresTest, ATargetInNoFolderIsNamedWithTheCause)
{
    ExportScene scene;
    scene.Triangle("m");
    for (std::string const& format : kFormats)
    {
        ToolRun const run = scene.Export(SceneText(), "none/out." + format);
        EXPECT_EQ(run.status, 1);
        ExpectOneSentence(run);
        EXPECT_THAT(run.error, HasSubstr("none/out." + format + ": it cannot be written: No such file or directory"));
    }
}

TEST(ExportFailuresTest, AFolderIsNoTarget)
{
    ExportScene scene;
    scene.Triangle("m");
    scene.Folder().MakeFolder("out.glb");
    ToolRun const run = scene.Export(SceneText(), "out.glb");
    EXPECT_EQ(run.status, 1);
    ExpectOneSentence(run);
    EXPECT_THAT(run.error, HasSubstr("out.glb: it cannot be written: Is a directory"));
    EXPECT_THAT(NamesIn(scene.PathOf("out.glb")), IsEmpty());
}

TEST(ExportFailuresTest, AFileThatMayNotGrowIsASentenceAndLeavesWhatWasThere)
{
    for (std::string const& format : kFormats)
    {
        ExportScene scene;
        PutLargeMesh(scene);
        // The text alone would fit.
        ASSERT_EQ(scene.Export(SceneText(), "small.glb", {"--hide", "Mesh"}).status, 0);
        scene.Folder().Write("out." + format, "what was there");
        std::vector<std::string> const before = NamesIn(scene.Folder().Path());
        ToolRun const run =
            RunToolWithFileLimit({"export", scene.PathOf("scene.xml"), scene.PathOf("out." + format)}, 20000);
        EXPECT_EQ(run.status, 1) << format;
        ExpectOneSentence(run);
        EXPECT_THAT(run.error, HasSubstr("out." + format + ": it cannot be written: File too large"));
        EXPECT_THAT(NamesIn(scene.Folder().Path()), UnorderedElementsAreArray(before)) << format;
        std::ifstream file(scene.PathOf("out." + format));
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "what was there");
    }
}

TEST(ExportFailuresTest, ASceneThatIsNoneIsASentenceAndNoFile)
{
    TempFolder folder;
    folder.Write("bad.xml", "<Scene><IFile");
    folder.Write("empty.xml", "");
    folder.Write("rootless.xml", "<Scene/>");
    for (std::string const name : {"bad.xml", "empty.xml", "rootless.xml", "missing.xml"})
    {
        ToolRun const run = RunTool({"export", folder.NarrowPathOf(name), folder.NarrowPathOf("out.glb")});
        EXPECT_EQ(run.status, 1) << name;
        ExpectOneSentence(run);
        EXPECT_THAT(run.error, HasSubstr(name));
    }
    EXPECT_THAT(NamesIn(folder.Path()), UnorderedElementsAreArray({"bad.xml", "empty.xml", "rootless.xml"}));
}

TEST(ExportFailuresTest, InstancesInACycleOrOfNothingDoNoHarm)
{
    std::string const loop = R"(<IAssembly ID="loop" Label="Loop"><ChildSet>)" + Instance("j", "p") +
                             Instance("back", "top") + "</ChildSet></IAssembly>";
    for (std::string const& more : {Instance("self", "top"), Instance("gone", "nowhere"), Instance("down", "loop")})
        for (std::string const& format : kFormats)
        {
            ExportScene scene;
            scene.Triangle("m");
            ToolRun const run =
                scene.Export(UnderTop(Instance("i", "p") + more) + loop + PartOfMesh(), "out." + format);
            ASSERT_EQ(run.status, 0) << run.error;
            if (format != "glb")
                continue;
            GltfFile const file(scene.PathOf("out.glb"));
            EXPECT_TRUE(file.Has("/Top/i/Mesh"));
            EXPECT_EQ(file.Has("/Top/down/j/Mesh"), more.find("loop") != std::string::npos);
        }
}

TEST(ExportFailuresTest, AFewComponentsThatStandForBillionsAreRefusedAtOnce)
{
    std::string text = UnderTop(Instance("a0", "level0") + Instance("b0", "level0"));
    for (int i = 0; i < 60; ++i)
    {
        std::string const next = "level" + std::to_string(i + 1);
        std::string const number = std::to_string(i + 1);
        text += "<IAssembly ID=\"level" + std::to_string(i) + "\"><ChildSet>" + Instance("a" + number, next) +
                Instance("b" + number, next) + "</ChildSet></IAssembly>";
    }
    text += R"(<IPart ID="level60" Label="Part"/>)";
    for (std::string const& format : kFormats)
    {
        ExportScene scene;
        ToolRun const run = scene.Export(text, "out." + format);
        EXPECT_EQ(run.status, 1);
        ExpectOneSentence(run);
        EXPECT_THAT(run.error, HasSubstr("000 occurrences"));
        EXPECT_LT(run.peakMemory, 500'000);
        EXPECT_FALSE(std::filesystem::exists(scene.PathOf("out." + format)));
    }
}

TEST(ExportFailuresTest, AnEndBySignalLeavesWhatWasThereAndNothingElse)
{
    // So many occurrences that the program is at it for seconds.
    std::string inner;
    std::string outer;
    for (int i = 0; i < 900; ++i)
    {
        outer += Instance("o" + std::to_string(i), "level");
        inner += Instance("i" + std::to_string(i), "p");
    }
    ExportScene scene;
    ASSERT_EQ(scene.Export(SceneText(), "small.glb").status, 0);
    std::string const text = "<Scene>" + UnderTop(outer) + "<IAssembly ID=\"level\"><ChildSet>" + inner +
                             R"(</ChildSet></IAssembly><IPart ID="p" Label="Part"/></Scene>)";
    scene.Folder().Write("scene.xml", text);
    scene.Folder().Write("out.glb", "what was there");
    std::vector<std::string> const before = NamesIn(scene.Folder().Path());
    for (int const signal : {SIGINT, SIGTERM})
    {
        auto const isAtIt = [&] { return NamesIn(scene.Folder().Path()).size() > before.size(); };
        EXPECT_EQ(RunToolUntil({"export", scene.PathOf("scene.xml"), scene.PathOf("out.glb")}, isAtIt, signal),
                  128 + signal);
        EXPECT_THAT(NamesIn(scene.Folder().Path()), UnorderedElementsAreArray(before));
        std::ifstream file(scene.PathOf("out.glb"));
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "what was there");
    }
}

TEST(ExportFailuresTest, WhatIsDeeperThanAThousandLevelsIsLeftOut)
{
    std::string text = UnderTop(Instance("a0", "level0"));
    for (int i = 0; i < 3000; ++i)
        text += "<IAssembly ID=\"level" + std::to_string(i) + "\"><ChildSet>" +
                Instance("a" + std::to_string(i + 1), "level" + std::to_string(i + 1)) + "</ChildSet></IAssembly>";
    text += R"(<IPart ID="level3000" Label="Part"/>)";
    // What sanitizers add to each level does not fit the usual stack.
    ResourceLimit const stack(RLIMIT_STACK, kIsSanitized ? rlim_t{512} << 20 : rlim_t{8} << 20);
    for (std::string const& format : kFormats)
    {
        ExportScene scene;
        ToolRun const run = scene.Export(text, "out." + format);
        EXPECT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.error, HasSubstr("1 instances without a target, or in a cycle"));
    }
}

TEST(ExportFailuresTest, ARootThatIsNoComponentIsOneSentenceInEveryFormat)
{
    for (std::string const format : {"glb", "gltf", "stl", "obj", "ply", "step", "brep"})
    {
        ExportScene scene;
        for (char const* const text :
             {R"(<IFile IsRoot="1"/>)",
              R"(<IFile ID="f" IsRoot="1"><AttributeSet><LayerSet><ILayer ID="f"/></LayerSet></AttributeSet></IFile>)"})
        {
            ToolRun const run = scene.Export(text, "out." + format);
            EXPECT_EQ(run.status, 1);
            ExpectOneSentence(run);
            EXPECT_THAT(run.error, HasSubstr("out." + format + ": the root of the scene is no file, assembly or part"));
            EXPECT_THAT(NamesIn(scene.Folder().Path()), testing::Not(testing::Contains("out." + format)));
        }
    }
}

// A ball that takes many seconds to mesh as finely as that.
TEST(ExportFailuresTest, GeometryThatTakesTooLongIsLeftOutAndNamed)
{
    ExportScene scene;
    Authoring::KernelStoreWriter kernel(scene.Folder().PathOf("s.sab"), Authoring::KernelStoreForm::kBinary);
    kernel.Body(UTF8String("ball"), BRepPrimAPI_MakeSphere(1000.0).Shape());
    kernel.Body(UTF8String("box"), BoxShape(10, 20, 30));
    kernel.Finish();
    SceneOptions options;
    options.path = scene.PathOf("scene.xml");
    scene.Folder().Write(
        "scene.xml", R"(<S><SatInfo Path="s.sab"/><IFile ID="f" IsRoot="1"><ChildSet><Child ID="p"/></ChildSet></IFile>
<IPart ID="p"><ChildSet><IBrep ID="ball" Visibility="1"/><IBrep ID="box" Visibility="1"/></ChildSet></IPart></S>)");
    ExportOptions exporting;
    // With sanitizers memory would run out first after a few seconds.
    unsigned const seconds = kIsSanitized ? 2 : 1;
    exporting.timeout = seconds;
    exporting.quality = {{1e-6, true}, 0.002};
    for (std::string const format : {".stl", ".glb"})
    {
        ExportResult const result = KVR::ExportScene(options, scene.PathOf("out" + format), exporting);
        ASSERT_EQ(result.outcome, Outcome::kDone) << result.failure;
        EXPECT_THAT(result.remarks,
                    testing::Contains("ball is left out, since with it its writer ended after the " +
                                      std::to_string(seconds) + " s of processor time that it may take"));
        EXPECT_GT(std::filesystem::file_size(scene.PathOf("out" + format)), 600U) << "the box is there";
        EXPECT_LT(std::filesystem::file_size(scene.PathOf("out" + format)), 20'000U) << "the ball is not";
    }
}

}  // namespace KVR::Test
