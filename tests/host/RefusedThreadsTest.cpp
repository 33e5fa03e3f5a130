// What the program does where the system gives it no thread beside the first.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The bytes of each, by its name.
std::map<std::string, std::string> FilesOf(TempFolder const& folder)
{
    std::map<std::string, std::string> files;
    for (auto const& entry : std::filesystem::directory_iterator(folder.Path()))
        files[entry.path().filename().string()] = BytesOf(entry.path().string());
    return files;
}

}  // namespace

TEST(RefusedThreads, AnImportAndAnExportMakeTheSameFiles)
{
    std::string const model = KVR_EXAMPLES_DIR "/models/as1-oc-214.stp";
    TempFolder const logs;
    std::string const log = logs.NarrowPathOf("log");
    std::vector<std::string> const refused = {"/usr/bin/strace",
                                              "-f",
                                              "-qq",
                                              "-o",
                                              log,
                                              "-e",
                                              "trace=clone3",
                                              "-e",
                                              "inject=clone3:error=EAGAIN",
                                              "-E",
                                              "ASAN_OPTIONS=detect_leaks=0",
                                              KVR_TOOL};
    TempFolder const usual;
    ASSERT_EQ(RunTool({"import", model, usual.NarrowPathOf("s.xml")}).status, 0);
    ASSERT_EQ(RunTool({"export", usual.NarrowPathOf("s.xml"), usual.NarrowPathOf("s.step")}).status, 0);
    TempFolder const alone;
    for (std::vector<std::string> arguments : {std::vector<std::string>{"import", model, alone.NarrowPathOf("s.xml")},
                                               {"export", alone.NarrowPathOf("s.xml"), alone.NarrowPathOf("s.step")}})
    {
        arguments.insert(arguments.begin(), refused.begin(), refused.end());
        ToolRun const run = RunProgram(arguments);
        EXPECT_EQ(run.status, 0) << run.error;
        // Without clone3 the C library would have begun threads in another way.
        if (arguments[refused.size()] == "import")
        {
            EXPECT_THAT(BytesOf(log), testing::HasSubstr("INJECTED"));
        }
    }
    auto const made = FilesOf(alone);
    for (auto const& [name, bytes] : FilesOf(usual))
    {
        auto const file = made.find(name);
        EXPECT_TRUE(file != made.end() && file->second == bytes) << name;
    }
}

}  // namespace KVR::Test
