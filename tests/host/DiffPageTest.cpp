// The file of the viewer that shows what differs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "exchange/ExportScene.h"
#include "host/diff/ComparisonFrame.h"
#include "inspect/Compare.h"
#include "tests/support/TestScene.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

std::string Instance(std::string const& id, std::string const& target, int x = 0)
{
    return "<IInstance ID=\"" + id + "\" Label=\"" + id + "\" Visibility=\"1\"><Child ID=\"" + target +
           "\" Transformation=\"1 0 0 " + std::to_string(x) + " 0 1 0 0 0 0 1 0 0 0 0 1\"/></IInstance>";
}

std::string Part(std::string const& id, std::string const& points)
{
    return "<IPart ID=\"" + id + "\" Label=\"" + id + "\"><ChildSet>" + points + "</ChildSet></IPart>";
}

std::string Point(std::string const& id, int x)
{
    return "<IPoint ID=\"" + id + "\" Label=\"" + id + "\"><Point X=\"" + std::to_string(x) +
           "\" Y=\"0\" Z=\"0\"/></IPoint>";
}

// An assembly with instances of parts, and another one in it.
std::string Gate(std::string const& instances, std::string const& inner, std::string const& parts)
{
    return R"(<Scene><IFile ID="f" Label="gate" IsRoot="1"><ChildSet><Child ID="a" Type="IAssembly"/></ChildSet></IFile>
        <IAssembly ID="a" Label="gate"><ChildSet>)" +
           instances + Instance("in", "b") + R"(</ChildSet></IAssembly><IAssembly ID="b" Label="inner"><ChildSet>)" +
           inner + "</ChildSet></IAssembly>" + parts + "</Scene>";
}

// "path style" of all that the frame colours.
std::vector<std::string> ColoursOf(std::string const& document)
{
    std::regex const entry(R"re(EntityStyles Path="([^"]*)"><Styles><StyleRef ID="kvr-diff:([^"]*)")re");
    std::vector<std::string> colours;
    for (std::sregex_iterator at(document.begin(), document.end(), entry); at != std::sregex_iterator(); ++at)
        colours.push_back((*at)[1].str() + " " + (*at)[2].str());
    return colours;
}

std::string const kParts = Part("p", Point("q", 1) + Point("r", 1)) + Part("z", Point("y", 5));

}  // namespace

TEST(DiffPage, ColoursWhatChangedAndAllElseAround)
{
    TestScene first(
        Gate(Instance("same", "z") + Instance("gone", "z") + Instance("far", "z"), Instance("deep", "p"), kParts));
    TestScene second(Gate(Instance("same", "z") + Instance("new", "z", 7) + Instance("far", "z", 9),
                          Instance("deep", "p"), Part("p", Point("q", 1) + Point("r", 2)) + Part("z", Point("y", 5))));
    first.Begin();
    second.Begin();
    SceneComparison const comparison = CompareScenes(first.Producer(), second.Producer());
    Scene const was(first.Producer(), "f");
    Scene const is(second.Producer(), "f");
    ComparisonFrame::NewIds newIds;
    for (char const* const id : {"f", "a", "b", "same", "gone", "far", "in", "deep", "p", "q", "r", "z", "y"})
        newIds[id] = id;
    ComparisonFrame const frame(comparison, was, newIds, is, "one & other");
    EXPECT_THAT(ColoursOf(frame.Document()),
                testing::UnorderedElementsAre("[kvr-diff:now1][same] same", "[kvr-diff:now1][new] added",
                                              "[kvr-diff:now1][far] changed", "[kvr-diff:now1][in][deep][q] same",
                                              "[kvr-diff:now1][in][deep][r] changed", "[kvr-diff:old1][gone] removed",
                                              "[kvr-diff:old1][far] former"));
    EXPECT_THAT(frame.Shown(), testing::UnorderedElementsAre("kvr-diff:now1", "gone", "far"));
    EXPECT_THAT(frame.Document(), HasSubstr("Label=\"one &#38; other\""));
    EXPECT_THAT(frame.Document(), HasSubstr(R"(Key="2 removed" Type="kString" Value="gate/gone: IInstance"/>)"));
    EXPECT_THAT(frame.Document(), HasSubstr("Label=\"added\"><LayerInfo ID=\"0\" Visibility=\"True\"/>"
                                            "<GeometryItems Items=\"new\"/></ILayer>"));
}

TEST(DiffPage, ANewNameDoesNotColourAllThatAnAssemblyHas)
{
    std::string const text = Gate("", Instance("deep", "p"), kParts);
    TestScene first(text);
    TestScene second(std::regex_replace(text, std::regex("Label=\"(inner|p)\""), "Label=\"$1 2\""));
    first.Begin();
    second.Begin();
    Scene const was(first.Producer(), "f");
    Scene const is(second.Producer(), "f");
    ComparisonFrame const frame(CompareScenes(first.Producer(), second.Producer()), was, {}, is, "");
    EXPECT_THAT(ColoursOf(frame.Document()), ElementsAre("[kvr-diff:now1][in][deep] touched"));
    EXPECT_THAT(frame.Shown(), ElementsAre("kvr-diff:now1"));
}

TEST(DiffPage, IsWrittenBesideTheText)
{
    TempFolder folder;
    folder.Write("a.xml", Gate(Instance("i", "p") + Instance("gone", "z"), "", kParts));
    folder.Write("b.xml", Gate(Instance("i", "p", 3), "", kParts));
    std::string const page = folder.NarrowPathOf("page.html");
    ToolRun const run = RunTool({"diff", "--html", page, folder.NarrowPathOf("a.xml"), folder.NarrowPathOf("b.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, testing::EndsWith(": 2 changes\n"));
    EXPECT_EQ(std::filesystem::exists(page), CanView()) << run.error;
    if (CanView())
    {
        EXPECT_EQ(run.error, "");
        std::ifstream file(page);
        std::string const text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_THAT(text, HasSubstr("a.xml -&gt; b.xml"));
    }
    // What cannot be written is said, and nothing is left over.
    ToolRun const refused = RunTool({"diff", "--html", folder.NarrowPathOf("none/page.html"),
                                     folder.NarrowPathOf("a.xml"), folder.NarrowPathOf("a.xml")});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.error, testing::StartsWith("kvr: "));
}

TEST(DiffPage, LeavesNoTemporaryFilesAndRemovesThoseOfAKilledRun)
{
    TempFolder folder;
    TempFolder temporary;
    folder.Write("a.xml", Gate(Instance("i", "p"), "", kParts));
    // As a run leaves it that was killed while it had its folder.
    temporary.Write("kvr-diff-abcdef/.kvr-lock", "a folder of the program kvr, which it may remove\n");
    temporary.Write("kvr-diff-abcdef/files/frame.xml", "<Scene/>");
    std::string const scene = folder.NarrowPathOf("a.xml");
    ToolRun const run = RunProgram({"/usr/bin/env", "TMPDIR=" + temporary.Path(), KVR_TOOL, "diff", "--html",
                                    folder.NarrowPathOf("page.html"), scene, scene});
    EXPECT_EQ(run.status, CanView() ? 0 : 2) << run.error;
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
}

}  // namespace KVR::Test
