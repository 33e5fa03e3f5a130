#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "exchange/ConvertModel.h"
#include "tests/exchange/ExportScene.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

std::string const kModel = std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp";

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// With a folder for temporary files of its own.
class Convert : public testing::Test
{
protected:
    Convert() { ::setenv("TMPDIR", m_scratch.Path().c_str(), 1); }
    ~Convert() override
    {
        ::unsetenv("TMPDIR");
        EXPECT_TRUE(fs::is_empty(m_scratch.Path())) << "what is for a moment has to go";
    }

    std::string PathOf(char const* name) const { return m_folder.NarrowPathOf(name); }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (fs::directory_entry const& entry : fs::directory_iterator(m_folder.Path()))
            names.push_back(entry.path().filename());
        return names;
    }

    TempFolder m_folder;

private:
    TempFolder m_scratch;
};

}  // namespace

TEST_F(Convert, IsAnImportAndAnExportWithoutASceneLeftOver)
{
    ASSERT_EQ(RunTool({"import", kModel, PathOf("a.xml")}).status, 0);
    ASSERT_EQ(RunTool({"export", PathOf("a.xml"), PathOf("both.stl")}).status, 0);
    std::vector<std::string> expected = Names();
    expected.emplace_back("one.stl");
    ToolRun const run = RunTool({"convert", kModel, PathOf("one.stl")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(BytesOf(PathOf("one.stl")), BytesOf(PathOf("both.stl")));
    EXPECT_THAT(Names(), UnorderedElementsAreArray(expected));
}

TEST_F(Convert, TakesASceneAndFilesBesideTheTarget)
{
    std::string const scene = std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml";
    ToolRun const run = RunTool({"convert", "--prefix", "x", scene, PathOf("one.obj")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(Names(), UnorderedElementsAre("one.obj", "one.mtl"));
}

TEST_F(Convert, KeepsTheSceneWhereThatIsWanted)
{
    ToolRun const run = RunTool({"convert", "--scene", PathOf("kept.xml"), "--no-brep", kModel, PathOf("one.ply")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(Names(), IsSupersetOf({"one.ply", "kept.xml", "kept.xml.mesh", "kept.xml.seg"}));
    EXPECT_FALSE(fs::exists(PathOf("kept.xml.sab")));
}

TEST_F(Convert, TellsWhatBothStepsLose)
{
    std::string const model = std::string(KVR_EXAMPLES_DIR) + "/models/nist_plate_creo_lbls.stp";
    ToolRun const imported = RunTool({"import", model, PathOf("a.xml")});
    ToolRun const exported = RunTool({"export", PathOf("a.xml"), PathOf("one.stl")});
    ASSERT_THAT(imported.error, HasSubstr("not in the scene: "));
    ASSERT_THAT(exported.error, HasSubstr("not in it: "));
    EXPECT_EQ(RunTool({"convert", model, PathOf("one.stl")}).error, imported.error + exported.error);
    EXPECT_EQ(RunTool({"convert", "--quiet", model, PathOf("one.stl")}).error, "");
}

TEST_F(Convert, OptionsOfBothStepsHold)
{
    auto const sizeOf = [&](std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "convert");
        arguments.insert(arguments.end(), {kModel, PathOf("one.stl")});
        ToolRun const run = RunTool(arguments);
        EXPECT_EQ(run.status, 0) << run.error;
        return fs::file_size(PathOf("one.stl"));
    };
    auto const usual = sizeOf({});
    EXPECT_GT(sizeOf({"--deflection", "0.02%"}), usual);
    EXPECT_GT(sizeOf({"--angle", "10"}), usual);
    EXPECT_GT(sizeOf({"--no-mesh", "--deflection", "0.02"}), usual);
    EXPECT_LT(sizeOf({"--only", "nut"}), usual);
}

TEST_F(Convert, AFailureOfEitherStepIsOneSentenceAndLeavesNothing)
{
    ToolRun const noModel = RunTool({"convert", PathOf("none.stp"), PathOf("one.stl")});
    EXPECT_EQ(noModel.status, 1);
    EXPECT_EQ(noModel.error, "kvr: " + PathOf("none.stp") + ": there is no such file\n");
    ToolRun const noTarget = RunTool({"convert", kModel, PathOf("no/where.stl")});
    EXPECT_EQ(noTarget.status, 1);
    EXPECT_THAT(noTarget.error, HasSubstr("where.stl: it cannot be written: No such file or directory\n"));
    EXPECT_EQ(RunTool({"convert", kModel, PathOf("one.xyz")}).status, 2);
    EXPECT_EQ(ConvertModel(kModel, PathOf("one.xyz")).failure,
              PathOf("one.xyz") + ": it has none of the extensions " + ExportFormats());
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(Convert, TheModelIsNoTarget)
{
    fs::copy(kModel, PathOf("a.stp"));
    fs::create_symlink(PathOf("a.stp"), PathOf("b.step"));
    ToolRun const run = RunTool({"convert", PathOf("a.stp"), PathOf("b.step")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.error, "kvr: " + PathOf("b.step") + ": it is " + PathOf("a.stp") + ", which is being read\n");
    EXPECT_EQ(BytesOf(PathOf("a.stp")), BytesOf(kModel));
}

TEST_F(Convert, OneWholeGoesThroughBothSteps)
{
    std::vector<std::string> stages;
    double whole = 0.0;
    ConvertResult const result = ConvertModel(kModel, PathOf("one.step"), {},
                                              [&](ProgressReport const& report)
                                              {
                                                  if (stages.empty() || stages.back() != report.stage)
                                                      stages.push_back(report.stage);
                                                  EXPECT_GE(report.whole, whole);
                                                  EXPECT_LE(report.whole, 1.0);
                                                  whole = report.whole;
                                                  return true;
                                              });
    ASSERT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_THAT(stages,
                ElementsAre("reading", "transferring", "meshing", "writing", "reading", "transferring", "writing"));
    EXPECT_GT(whole, 0.8);
    EXPECT_EQ(result.imported.value().counts.parts, 5U);
}

TEST_F(Convert, IsCancelledInBothSteps)
{
    for (double const limit : {0.0, 0.3, 0.76})
    {
        ConvertResult const result = ConvertModel(kModel, PathOf("one.glb"), {},
                                                  [&](ProgressReport const& report) { return report.whole < limit; });
        EXPECT_EQ(result.outcome, Outcome::kCancelled) << limit;
        EXPECT_THAT(Names(), IsEmpty());
    }
}

}  // namespace KVR::Test
