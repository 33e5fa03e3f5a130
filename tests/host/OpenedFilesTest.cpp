// What the program opens, and whom it asks, when it reads a scene: seen from outside.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TestScene.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using Names = std::set<std::string>;

struct SystemCalls
{
    int status = -1;
    std::string error;
    /// Of the files in the folder of the scene that were opened, the names; of others, the paths.
    Names inFolder;
    Names elsewhere;
    /// The calls that make sockets or use them.
    std::vector<std::string> network;
};

// A leak check cannot run in a process that is traced already.
SystemCalls Trace(std::vector<std::string> words, std::string const& folder)
{
    TempFolder const scratch;
    std::string const log = scratch.NarrowPathOf("log");
    words.insert(words.begin(),
                 {"/usr/bin/strace", "-f", "-qq", "-s", "4096", "-o", log, "-e",
                  "trace=open,openat,socket,connect,sendto", "-E", "ASAN_OPTIONS=detect_leaks=0", KVR_TOOL});
    ToolRun const run = RunProgram(words);
    SystemCalls calls;
    calls.status = run.status;
    calls.error = run.error;
    std::ifstream file(log);
    std::regex const opened(R"re(open(?:at)?\((?:[^"]*, )?"([^"]*)".*= \d+)re");
    std::regex const network(R"re((?:socket|connect|sendto)\()re");
    for (std::string line; std::getline(file, line);)
    {
        std::smatch match;
        if (std::regex_search(line, network))
            calls.network.push_back(line);
        else if (!std::regex_search(line, match, opened))
            continue;
        else if (std::string const path = match[1]; path.starts_with(folder + "/"))
            calls.inFolder.insert(path.substr(folder.size() + 1));
        else if (!path.starts_with("/proc/"))
            calls.elsewhere.insert(path);
    }
    return calls;
}

// What it opens for itself: libraries, data of the locale.
Names OpenedAnyway(std::string const& command)
{
    TestScene const empty("<S><IFile ID='f' IsRoot='1'/></S>");
    SystemCalls const calls = Trace({command, empty.Path()}, empty.Folder());
    EXPECT_EQ(calls.status, 0) << calls.error;
    EXPECT_FALSE(calls.elsewhere.empty());
    return calls.elsewhere;
}

}  // namespace

TEST(OpenedFiles, AreTheSceneAndTheSideFilesThatItNames)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.WithFile("bystander.mesh", "");
    for (std::string const command : {"dump", "tree", "views", "notes"})
    {
        SystemCalls const calls = Trace({command, scene.Path()}, scene.Folder());
        EXPECT_EQ(calls.status, 0) << calls.error;
        EXPECT_TRUE(calls.inFolder.contains("scene.xml"));
        EXPECT_FALSE(calls.inFolder.contains("bystander.mesh"));
        EXPECT_GT(calls.inFolder.size(), 3U);
        EXPECT_EQ(calls.elsewhere, OpenedAnyway(command)) << command;
        EXPECT_THAT(calls.network, testing::IsEmpty()) << command;
    }
}

TEST(OpenedFiles, AreNoSchemasEntitiesOrDocumentTypes)
{
    LoopbackServer const server(LoopbackServer::Documents{});
    std::string const address = server.AddressOf("/there");
    std::string const schema =
        "<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
        "xsi:noNamespaceSchemaLocation='PLACE' xsi:schemaLocation='urn:o PLACE'>";
    std::string const root = "<IFile ID='f' IsRoot='1'/></S>";
    Names const anyway = OpenedAnyway("tree");
    struct Case
    {
        std::string xml;
        int status;
        std::vector<std::string> options;
    };
    for (Case const& test : {Case{schema + root, 0, {}}, Case{"<!DOCTYPE S SYSTEM 'PLACE'><S>" + root, 1, {}},
                             Case{"<!DOCTYPE S [<!ENTITY e SYSTEM 'PLACE'>]><S>&e;" + root, 1, {}},
                             Case{"<!DOCTYPE S [<!ENTITY % e SYSTEM 'PLACE'>%e;]><S>" + root, 1, {}}})
        for (std::string const& place : {address, std::string("beside.txt")})
        {
            TestScene scene(std::regex_replace(test.xml, std::regex("PLACE"), place));
            scene.WithFile("beside.txt", "");
            SystemCalls const calls = Trace({"tree", scene.Path()}, scene.Folder());
            EXPECT_EQ(calls.status, test.status) << calls.error;
            EXPECT_EQ(calls.inFolder, Names{"scene.xml"});
            EXPECT_EQ(calls.elsewhere, anyway);
            EXPECT_THAT(calls.network, testing::IsEmpty());
        }
    EXPECT_TRUE(server.Requests().empty());
}

TEST(OpenedFiles, WithDocumentTypesAreNeverOfTheNetwork)
{
    LoopbackServer const server(LoopbackServer::Documents{{"/secret.txt", "secret"}});
    TestScene const remote("<!DOCTYPE S [<!ENTITY e SYSTEM '" + server.AddressOf("/secret.txt") +
                           "'>]><S>&e;<IFile ID='f' IsRoot='1'/></S>");
    SystemCalls const calls = Trace({"tree", "--allow-dtd", remote.Path()}, remote.Folder());
    EXPECT_EQ(calls.status, 1);
    EXPECT_THAT(calls.error, testing::HasSubstr("it names a document that is not in the file system"));
    EXPECT_THAT(calls.network, testing::IsEmpty());
    EXPECT_TRUE(server.Requests().empty());
}

TEST(OpenedFiles, OfADocumentBeyondALimitTellsWhich)
{
    std::string attributes;
    for (int i = 0; i < 1001; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    TestScene const scene("<S><IFile ID='f' IsRoot='1'" + attributes + "/></S>");
    ToolRun const run = RunTool({"tree", scene.Path()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, testing::HasSubstr("an element has more than 1000 attributes"));
}

}  // namespace KVR::Test
