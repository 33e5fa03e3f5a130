// The command "diff".

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;

constexpr char kComplete[] = KVR_EXAMPLES_DIR "/complete/complete.xml";

// A part with so many points, at a height.
std::string PartWithPoints(int count, int z)
{
    std::string text =
        "<Scene><IFile ID=\"f\" Label=\"gate\" IsRoot=\"1\"><ChildSet><Child ID=\"p\" Type=\"IPart\"/>"
        "</ChildSet></IFile><IPart ID=\"p\" Label=\"door\"><ChildSet>";
    for (int i = 0; i < count; ++i)
        text += "<IPoint ID=\"q" + std::to_string(i) + "\"><Point X=\"0\" Y=\"0\" Z=\"" + std::to_string(z) +
                "\"/></IPoint>";
    return text + "</ChildSet></IPart></Scene>";
}

struct TwoScenes
{
    TwoScenes(std::string const& one, std::string const& other)
    {
        folder.Write("a.xml", one);
        folder.Write("b.xml", other);
    }
    ToolRun Run(std::vector<std::string> options = {}) const
    {
        options.insert(options.begin(), "diff");
        options.push_back(a);
        options.push_back(b);
        return RunTool(options);
    }
    TempFolder folder;
    std::string a = folder.NarrowPathOf("a.xml");
    std::string b = folder.NarrowPathOf("b.xml");
};

}  // namespace

TEST(Diff, EndsWithZeroForScenesThatServeTheSame)
{
    ToolRun const run = RunTool({"diff", kComplete, kComplete});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(run.out, std::string(kComplete) + " -> " + kComplete + ": nothing changed\n");
}

TEST(Diff, ListsTenChangesOfAKindOrAll)
{
    TwoScenes const scenes(PartWithPoints(12, 0), PartWithPoints(12, 1));
    ToolRun const run = scenes.Run();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.out, testing::StartsWith("shape (12)\n  door/q0\n"));
    EXPECT_THAT(run.out, HasSubstr("  door/q9\n  and 2 more; --all shows them\n"));
    EXPECT_THAT(run.out, testing::EndsWith(": 12 changes\n"));
    std::string const all = scenes.Run({"--all"}).out;
    EXPECT_THAT(all, HasSubstr("  door/q11\n"));
    EXPECT_EQ(all.find("more"), std::string::npos);
}

TEST(Diff, PrintsJson)
{
    TwoScenes const scenes(PartWithPoints(1, 0), PartWithPoints(2, 0));
    ToolRun const run = scenes.Run({"--json"});
    EXPECT_EQ(run.status, 1);
    auto const json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["First"], scenes.a);
    EXPECT_FALSE(json["Same"].get<bool>());
    ASSERT_EQ(json["Changes"].size(), 1U);
    EXPECT_EQ(json["Changes"][0]["Kind"], "added");
    EXPECT_EQ(json["Changes"][0]["SecondId"], "q1");
    EXPECT_EQ(json["Changes"][0]["Occurrences"], 1);
    EXPECT_TRUE(json["Changes"][0]["DistanceInMetres"].is_null());
    EXPECT_EQ(json["Matched"]["id"], 3);
}

TEST(Diff, TellsHowFarSomethingMoved)
{
    std::string const moved = R"(<Scene><IFile ID="f" Label="" IsRoot="1"><ChildSet><Child ID="a" Type="IAssembly"/>
        </ChildSet></IFile><IAssembly ID="a" Label="gate"><Unit LengthUnit="kUnitType_Meter"/><ChildSet>
        <IInstance ID="i" Label="door"><Child ID="p" Transformation="@"/></IInstance></ChildSet></IAssembly>
        <IPart ID="p" Label=""/></Scene>)";
    auto const at = [&](std::string const& matrix)
    {
        std::string text = moved;
        return text.replace(text.find('@'), 1, matrix);
    };
    std::string const origin = at("1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1");
    EXPECT_THAT(TwoScenes(origin, at("0 -1 0 2.5 1 0 0 0 0 0 1 0 0 0 0 1")).Run().out,
                HasSubstr("moved (1)\n  gate/door: 2.5 m, 90 degrees\n"));
    EXPECT_THAT(TwoScenes(origin, at("1 0 0 0.25 0 1 0 0 0 0 -1 0 0 0 0 1")).Run().out,
                HasSubstr("  gate/door: 250 mm, and stretched or mirrored\n"));
}

TEST(Diff, ServesGitAsADifftool)
{
    TempFolder folder;
    auto const write = [&](std::string const& label, std::string const& mass)
    {
        folder.Write("gate/a.kvrproperty",
                     "<Properties><Property ID=\"1\" ObjectID=\"i\" Name=\"mass\" Type=\"kInt\" "
                     "Value=\"" +
                         mass + "\"/></Properties>");
        folder.Write("gate/a.xml", R"(<Scene><IUniverse/><IFile ID="f" Label="" IsRoot="1"><ChildSet><Child ID="a"
            Type="IAssembly"/></ChildSet></IFile><IAssembly ID="a" Label="gate"><ChildSet><IInstance ID="i" Label=")" +
                                       label + R"("><Child ID="p"/></IInstance></ChildSet></IAssembly>
            <IPart ID="p" Label=""/></Scene>)");
    };
    std::string const git = "git -C " + folder.Path() + " -c user.name=n -c user.email=e -c core.hooksPath=/dev/null ";
    auto const shell = [](std::string const& command) { return RunProgram({"/bin/sh", "-c", command}); };
    write("door", "1");
    ASSERT_EQ(shell(git + "init -q && " + git + "add . && " + git + "commit -qm one").status, 0);
    write("leaf", "2");
    ASSERT_EQ(shell(git + "commit -qam two").status, 0);
    std::string const tool = std::string("-c diff.tool=kvr -c difftool.kvr.cmd='KVR=") + KVR_TOOL + " " + KVR_DOCS_DIR +
                             "/../scripts/kvr-difftool \"$LOCAL\" \"$REMOTE\" \"$MERGED\"' ";
    for (char const* const versions : {"HEAD~1", "HEAD~1 HEAD"})
    {
        ToolRun const run = shell(git + tool + "difftool --no-prompt " + versions + " -- gate/a.xml");
        EXPECT_EQ(run.error, "");
        EXPECT_THAT(run.out, testing::StartsWith(
                                 "renamed (1)\n  gate/leaf: door -> leaf\nproperty (1)\n  gate/leaf: mass 1 -> 2\n"));
    }
    // By itself it ends as the program does.
    folder.Write("broken.xml", "<Scene>");
    std::string const script = "cd " + folder.Path() + " && KVR=" + KVR_TOOL + " " + KVR_DOCS_DIR +
                               "/../scripts/kvr-difftool \"$0\" gate/a.xml gate/a.xml";
    EXPECT_EQ(RunProgram({"/bin/sh", "-c", script, "gate/a.xml"}).status, 0);
    EXPECT_EQ(RunProgram({"/bin/sh", "-c", script, "broken.xml"}).status, 2);
    EXPECT_EQ(RunProgram({"/bin/sh", "-c", script, "none.xml"}).status, 2);
}

TEST(Diff, ComplainsOfWhatCannotBeCompared)
{
    TwoScenes const scenes("<Scene><IPart ID=\"p\" Label=\"\"/></Scene>", "<Scene>");
    ToolRun const run = scenes.Run();
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.error, HasSubstr("a.xml: the scene has no root file, so there is nothing to compare\n"));
    EXPECT_THAT(run.error, HasSubstr("b.xml\" cannot be read: it is not a well-formed XML document\n"));
    EXPECT_EQ(RunTool({"diff", kComplete}).status, 2);
    EXPECT_EQ(RunTool({"diff", kComplete, scenes.b + ".none"}).status, 2);
    // What cannot be printed is no difference, either.
    std::string const full = std::string(KVR_TOOL) + " diff " + kComplete + " " + kComplete + " > /dev/full";
    EXPECT_EQ(RunProgram({"/bin/sh", "-c", full}).status, 2);
}

}  // namespace KVR::Test
