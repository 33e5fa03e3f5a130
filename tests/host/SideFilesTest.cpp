#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

// What the commands say of a scene's side files.
namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char const* kCommands[] = {"tree", "dump", "views", "notes", "export"};

ToolRun RunOn(std::string const& command, TempFolder const& folder, std::vector<std::string> const& options = {})
{
    std::vector<std::string> arguments = {command, folder.NarrowPathOf("scene.xml")};
    if (command == "export")
        arguments.push_back(folder.NarrowPathOf("out.stl"));
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunTool(arguments);
}

}  // namespace

TEST(SideFilesOfCommands, AreToldWhenTheyAreMissingAndStrictRefusesThem)
{
    TempFolder const folder;
    folder.Write(
        "scene.xml",
        "<Scene><IFile ID=\"f\" Label=\"\"/></Scene><?kvr-side-files\n  scene.xml.mesh 3 0000000000000000\n?>");
    for (char const* const command : kCommands)
    {
        ToolRun const run = RunOn(command, folder);
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_THAT(run.error, HasSubstr("the scene's side file scene.xml.mesh is missing\n")) << command;
        ToolRun const strict = RunOn(command, folder, {"--strict"});
        EXPECT_EQ(strict.status, 1) << command;
        EXPECT_EQ(strict.error, "kvr: \"" + folder.NarrowPathOf("scene.xml") +
                                    "\" cannot be read: the scene's side file scene.xml.mesh is missing\n");
        EXPECT_EQ(strict.out.empty(), command != std::string("dump")) << command;
    }
}

TEST(SideFilesOfCommands, ASceneThatHasAllOfThemIsReadWithoutAWord)
{
    TempFolder const folder;
    folder.Write("scene.xml", "<Scene><IFile ID=\"f\" Label=\"\"/></Scene>\n<?kvr-side-files\n?>\n");
    for (char const* const command : kCommands)
    {
        ToolRun const run = RunOn(command, folder, {"--strict"});
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_THAT(run.error, IsEmpty()) << command;
    }
}

TEST(SideFilesOfCommands, OfASceneWithoutNotesAreToldByTheReader)
{
    TempFolder const folder;
    folder.Write("scene.xml",
                 R"(<Scene><MeshInfo GenerateMesh="True" Path="a\b.mesh"/><IFile ID="f" Label=""/></Scene>)");
    for (char const* const command : kCommands)
    {
        EXPECT_THAT(RunOn(command, folder).error, HasSubstr("the scene's side file a\\\\b.mesh is missing\n"))
            << command;
        EXPECT_EQ(RunOn(command, folder, {"--strict"}).status, 1) << command;
    }
}

// Other files of the same length under the names of the side files.
TEST(SideFilesOfCommands, AreNotReadByThoseThatShowNothingOfThem)
{
    TempFolder const folder;
    std::string const scene = folder.NarrowPathOf("scene.xml");
    ASSERT_EQ(RunTool({"import", "--quiet", KVR_EXAMPLES_DIR "/models/as1-oc-214.stp", scene}).status, 0);
    std::vector<std::vector<std::string>> const commands = {{"views", scene, "--json"},
                                                            {"notes", scene, "--json"},
                                                            {"query", scene, "*", "--csv"},
                                                            {"query", scene, "*[visible]", "--count"},
                                                            {"query", scene, "*", "--columns", "path,property[\"a\"]"},
                                                            {"tree", scene},
                                                            {"query", scene, "*[mesh]", "--count"}};
    constexpr std::size_t kShowNothing = 5;
    std::vector<ToolRun> before;
    for (auto const& command : commands)
        before.push_back(RunTool(command));
    for (auto const& entry : std::filesystem::directory_iterator(folder.Path()))
        if (std::string const name = entry.path().filename().string(); name != "scene.xml")
            folder.Write(name, std::string(entry.file_size(), 'x'));
    for (std::size_t i = 0; i < commands.size(); ++i)
    {
        ToolRun const run = RunTool(commands[i]);
        EXPECT_EQ(run.out == before[i].out && run.error.empty(), i < kShowNothing) << i << run.out << run.error;
    }
    EXPECT_EQ(RunTool({"views", scene, "--strict"}).status, 1);
}

}  // namespace KVR::Test
