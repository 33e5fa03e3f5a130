// The command "hash".

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr char kComplete[] = KVR_EXAMPLES_DIR "/complete/complete.xml";

}  // namespace

TEST(Hash, PrintsADigestAndTheScene)
{
    ToolRun const run = RunTool({"hash", kComplete});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.out, MatchesRegex("[0-9a-f]{32}  .*/complete\\.xml\n"));
    EXPECT_NE(RunTool({"hash", "--extension", "texture", kComplete}).out, run.out);
}

TEST(Hash, PrintsALineForEachObject)
{
    ToolRun const run = RunTool({"hash", "--parts", kComplete});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, MatchesRegex("[0-9a-f]{32}  IUniverse\n[0-9a-f]{32}  IAssembly assembly\n.*"));
    EXPECT_THAT(run.out, HasSubstr("  IBrep text-body\n"));
    EXPECT_EQ(RunTool({"hash", "--parts", "--prefix", "n", kComplete}).out.find("  IBrep text-body\n"),
              std::string::npos);
    EXPECT_GT(std::count(run.out.begin(), run.out.end(), '\n'), 30);
}

TEST(Hash, EscapesIds)
{
    TempFolder folder;
    folder.Write("s.xml", "<Scene><IFile ID=\"f&#x202e;\" Label=\"\" IsRoot=\"1\"/></Scene>");
    EXPECT_THAT(RunTool({"hash", "--parts", folder.NarrowPathOf("s.xml")}).out, HasSubstr("  IFile f\\u202e\n"));
}

TEST(Hash, ListsIdsWithoutAnObject)
{
    TempFolder folder;
    folder.Write("s.xml",
                 "<Scene><IFile ID=\"f\" Label=\"\" IsRoot=\"1\"><ChildSet><Child ID=\"p\" Type=\"IPart\"/></ChildSet>"
                 "</IFile><IPart ID=\"p\" Label=\"\"><Styles><StyleRef ID=\"none\"/></Styles></IPart></Scene>");
    EXPECT_THAT(RunTool({"hash", "--parts", folder.NarrowPathOf("s.xml")}).out,
                HasSubstr("\n00000000000000000000000000000000  missing none\n"));
}

TEST(Hash, FailsForASceneWithoutARoot)
{
    TempFolder folder;
    folder.Write("s.xml", "<Scene><IPart ID=\"p\" Label=\"\"/></Scene>");
    ToolRun const run = RunTool({"hash", folder.NarrowPathOf("s.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.error, HasSubstr("s.xml: the scene has no root file, so there is nothing to digest\n"));
    EXPECT_EQ(RunTool({"hash", folder.NarrowPathOf("none.xml")}).status, 1);
}

}  // namespace KVR::Test
