#include "host/Commands.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <initializer_list>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/Program.h"

namespace KVR::Test
{

namespace
{

std::set<std::string> NamesOf(MakeCommands makeCommands)
{
    CLI::App program;
    Commands const commands = makeCommands(program);
    std::set<std::string> names;
    for (CLI::App const* const command : program.get_subcommands([](CLI::App const*) { return true; }))
        names.insert(command->get_name());
    EXPECT_EQ(names.size(), commands.size());
    return names;
}

std::vector<int> ends;

// With what a run ends, and what it writes; the statuses that were handed over stand in ends.
std::pair<int, std::string> RunInside(std::initializer_list<char const*> words)
{
    std::vector<char const*> arguments(words);
    arguments.insert(arguments.begin(), "kvr");
    ends.clear();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int const status = KVR::RunProgram(static_cast<int>(arguments.size()), arguments.data(), &SceneCommands,
                                       [](int handedOver) { ends.push_back(handedOver); });
    testing::internal::GetCapturedStderr();
    return {status, testing::internal::GetCapturedStdout()};
}

}  // namespace

TEST(Program, HandsOverTheStatusOfACommandThatHasRun)
{
    auto const [status, text] = RunInside({"hash", KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml"});
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(ends, std::vector<int>{0});
    EXPECT_EQ(RunInside({"tree", "/nowhere.xml"}).first, 1);
    EXPECT_EQ(ends, std::vector<int>{1});
}

TEST(Program, HandsOverNoStatusOfWhatDidNotRun)
{
    EXPECT_EQ(RunInside({"tree"}).first, 2);
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(RunInside({"--version"}).first, 0);
    EXPECT_TRUE(ends.empty());
}

TEST(Commands, OfScenesAreTheOnesThatAreKnownByName)
{
    std::set<std::string> const ofScenes = NamesOf(&SceneCommands);
    EXPECT_FALSE(ofScenes.empty());
    for (std::string const& name : NamesOf(&AllCommands))
        EXPECT_EQ(IsSceneCommand(name), ofScenes.count(name) == 1) << name;
    EXPECT_FALSE(IsSceneCommand("export"));
    EXPECT_FALSE(IsSceneCommand("--help"));
}

}  // namespace KVR::Test
