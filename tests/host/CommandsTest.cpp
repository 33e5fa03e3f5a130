#include "host/Commands.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <set>
#include <string>

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

}  // namespace

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
