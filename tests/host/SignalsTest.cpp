// How the program ends when somebody ends it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tool/RunningTool.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;

using testing::StartsWith;
using testing::UnorderedElementsAre;

std::vector<std::string> NamesIn(std::string const& folder)
{
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

bool IsWorkFolder(std::string const& name)
{
    return name.starts_with(".kvr-");
}

// A scene of so many occurrences that the export of it takes seconds.
class InTheMidst : public testing::Test
{
protected:
    InTheMidst()
    {
        std::string inner;
        std::string outer;
        for (int i = 0; i < 900; ++i)
        {
            std::string const number = std::to_string(i);
            outer += "<IInstance ID=\"o" + number + "\" Visibility=\"1\"><Child ID=\"level\"/></IInstance>";
            inner += "<IInstance ID=\"i" + number + "\" Visibility=\"1\"><Child ID=\"p\"/></IInstance>";
        }
        m_folder.Write("scene.xml",
                       "<Scene><IFile ID=\"f\" IsRoot=\"1\"><ChildSet><Child ID=\"top\" Type=\"IAssembly\"/></ChildSet>"
                       "</IFile><IAssembly ID=\"top\"><ChildSet>" +
                           outer + "</ChildSet></IAssembly><IAssembly ID=\"level\"><ChildSet>" + inner +
                           "</ChildSet></IAssembly><IPart ID=\"p\" Label=\"Part\"/></Scene>");
        m_folder.Write("out.glb", "what was there");
    }

    std::vector<std::string> Arguments() const
    {
        return {"export", m_folder.NarrowPathOf("scene.xml"), m_folder.NarrowPathOf("out.glb")};
    }
    // Whether the program is at its work: its folder has its lock, and a place for files.
    bool HasBegun() const
    {
        std::vector<std::string> const names = NamesIn(m_folder.Path());
        return std::any_of(names.begin(), names.end(),
                           [&](std::string const& name)
                           { return IsWorkFolder(name) && fs::exists(m_folder.NarrowPathOf(name + "/files")); });
    }
    bool HasWorkFolder() const
    {
        std::vector<std::string> const names = NamesIn(m_folder.Path());
        return std::any_of(names.begin(), names.end(), &IsWorkFolder);
    }
    void ExpectAsBefore() const
    {
        EXPECT_THAT(NamesIn(m_folder.Path()), UnorderedElementsAre("scene.xml", "out.glb"));
        std::ifstream file(m_folder.NarrowPathOf("out.glb"));
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "what was there");
    }

    TempFolder m_folder;
};

}  // namespace

TEST_F(InTheMidst, ASignalEndsTheProgramItselfWhenAllIsCleanedUp)
{
    for (int const signal : {SIGINT, SIGTERM, SIGHUP})
    {
        RunningTool run(Arguments());
        ASSERT_TRUE(run.WaitFor([&] { return HasBegun(); }));
        run.Send(signal);
        int const status = run.Wait();
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_TRUE(run.AllEnd());
        ExpectAsBefore();
    }
}

TEST_F(InTheMidst, WhatIsToBeIgnoredIsIgnored)
{
    RunningTool run(Arguments(), {SIGHUP});
    ASSERT_TRUE(run.WaitFor([&] { return HasBegun(); }));
    run.Send(SIGHUP);
    run.Send(SIGINT);
    int const status = run.Wait();
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    ExpectAsBefore();
}

TEST_F(InTheMidst, AKilledRunTakesItsChildWithItAndTheNextOneRemovesWhatItLeft)
{
    {
        RunningTool run(Arguments());
        ASSERT_TRUE(run.WaitFor([&] { return HasBegun(); }));
        run.Send(SIGKILL);
        run.Wait();
        EXPECT_TRUE(run.AllEnd());
    }
    EXPECT_TRUE(HasWorkFolder());
    // A scene that is none: nothing is written, but the folder of the run before goes.
    m_folder.Write("none.xml", "<S/>");
    EXPECT_EQ(RunTool({"export", m_folder.NarrowPathOf("none.xml"), m_folder.NarrowPathOf("out.glb")}).status, 1);
    fs::remove(m_folder.NarrowPathOf("none.xml"));
    ExpectAsBefore();
}

TEST_F(InTheMidst, TheFolderOfARunThatGoesOnStays)
{
    RunningTool run(Arguments());
    ASSERT_TRUE(run.WaitFor([&] { return HasBegun(); }));
    m_folder.Write("none.xml", "<S/>");
    EXPECT_EQ(RunTool({"export", m_folder.NarrowPathOf("none.xml"), m_folder.NarrowPathOf("other.glb")}).status, 1);
    EXPECT_TRUE(HasWorkFolder());
}

TEST_F(InTheMidst, ShowsHowFarItIsOnATerminal)
{
    TempFolder folder;
    RunningTool run({"import", std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp", folder.NarrowPathOf("a.xml")},
                    {}, RunningTool::StandardError::kTerminal);
    std::string const text = run.ReadTerminal();
    EXPECT_EQ(run.Wait(), 0);
    std::size_t place = 0;
    for (char const* const stage : {"reading", "transferring", "meshing", "writing"})
    {
        place = text.find(std::string("\r") + stage, place);
        EXPECT_NE(place, std::string::npos) << stage << " in " << text;
    }
    EXPECT_TRUE(text.ends_with("\r\x1b[K")) << text;
}

TEST(Pipe, WhoeverWantsItsSignalIgnoredIsToldOfIt)
{
    // More than a pipe holds, so that the program comes to know that nobody reads it.
    std::string const script = R"(trap '' PIPE; "$0" dump "$1" | true; echo "status ${PIPESTATUS[0]}")";
    ToolRun const run =
        RunProgram({"/bin/bash", "-c", script, KVR_TOOL, std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml"});
    EXPECT_EQ(run.out, "status 1\n");
    EXPECT_THAT(run.error, StartsWith("kvr: standard output: "));
}

TEST(Pipe, AnImportIsDoneWhoeverReadsItsLine)
{
    TempFolder folder;
    EXPECT_EQ(RunToolWithoutReader({"import", "--no-mesh", std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp",
                                    folder.NarrowPathOf("a.xml")}),
              0);
    EXPECT_TRUE(fs::exists(folder.NarrowPathOf("a.xml")));
}

}  // namespace KVR::Test
