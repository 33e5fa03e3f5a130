// The README's example of a mistake is what the program prints.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

// The commands of a section's examples, each with what stands below it.
std::vector<std::pair<std::string, std::string>> CommandsOfSection(std::string const& heading)
{
    std::vector<std::pair<std::string, std::string>> commands;
    std::ifstream file(KVR_DOCS_DIR "/../README.md");
    bool isInside = false;
    for (std::string line; std::getline(file, line);)
    {
        if (line.starts_with("## "))
            isInside = line == heading;
        if (!isInside || !line.starts_with("    "))
            continue;
        if (line.starts_with("    $ "))
            commands.emplace_back(line.substr(6), "");
        else if (!commands.empty())
            commands.back().second += line.substr(4) + "\n";
    }
    return commands;
}

std::string OutputOf(std::string const& command, TempFolder const& folder)
{
    std::string const tools = std::filesystem::path(KVR_TOOL).parent_path().string();
    ToolRun const run = RunProgram(
        {"/bin/sh", "-c", "cd '" + folder.Path() + "' && PATH='" + tools + "':\"$PATH\" && " + command + " 2>&1"});
    return run.out;
}

}  // namespace

TEST(Readme, TheMistakeItsCheckAndItsRepairAreAsTheProgramHasThem)
{
    auto const commands = CommandsOfSection("## A mistake");
    ASSERT_EQ(commands.size(), 4U);
    ASSERT_EQ(commands[0].first, "cat gate.xml");
    TempFolder const folder;
    folder.Write("gate.xml", commands[0].second);
    EXPECT_EQ(commands[1].first, "kvr check gate.xml");
    EXPECT_EQ(commands[2].first, "kvr check --fix gate.xml | patch -p0");
    EXPECT_EQ(commands[3].first, "kvr check gate.xml && cat gate.xml");
    for (std::size_t i = 1; i < commands.size(); ++i)
        EXPECT_EQ(OutputOf(commands[i].first, folder), commands[i].second) << commands[i].first;
}

}  // namespace KVR::Test
