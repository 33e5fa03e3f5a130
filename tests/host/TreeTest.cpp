#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/host/ResourceLimit.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

std::string const kAs1 = KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml";

struct TreeRun : ToolRun
{
    explicit TreeRun(std::string const& xml, std::vector<std::string> options = {})
    {
        folder.Write("scene.xml", xml);
        options.insert(options.begin(), {"tree", folder.NarrowPathOf("scene.xml")});
        static_cast<ToolRun&>(*this) = RunTool(options);
    }
    TempFolder folder;
};

std::vector<std::string> Lines(std::string const& text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start))
    {
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::string Instance(std::string const& id, std::string const& target, char const* visibility = "1")
{
    return "<IInstance ID=\"" + id + "\" Label=\"" + id + "\" Visibility=\"" + visibility + "\"><Child ID=\"" + target +
           "\"/></IInstance>";
}

std::string Assembly(std::string const& id, std::string const& children)
{
    return "<IAssembly ID=\"" + id + "\" Label=\"" + id + "\"><ChildSet>" + children + "</ChildSet></IAssembly>";
}

std::string File(std::string const& child)
{
    return "<IFile ID=\"f\" Label=\"f\"><ChildSet><C ID=\"" + child + "\"/></ChildSet></IFile>";
}

TEST(Tree, TheBundledAssemblyHasItsClassicArrangement)
{
    ToolRun const run = RunTool({"tree", kAs1});
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(
        run.out,
        EndsWith("1 file, 4 assemblies, 5 parts, 13 instances, 28 occurrences (18 of parts), deepest level 4\n"));
    EXPECT_THAT(run.out, HasSubstr("IInstance \"plate_1\" inst3 -> IPart \"plate\" part4, visible"));
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos) << "no colour but on a terminal";
}

TEST(Tree, AMeshHasItsCountsAndItsBox)
{
    EXPECT_THAT(RunTool({"tree", kAs1}).out,
                HasSubstr("IPolygonMesh \"nut\" mesh2, visible, 156 polygons, 168 vertices, from (0, 0, 0) to "
                          "(20, 15, 3)\n"));
    json const tree = json::parse(RunTool({"tree", kAs1, "--json"}).out);
    json const& mesh = tree["Tree"][0]["Children"][0]["Children"][0]["Children"][0]["Children"][0];
    EXPECT_EQ(mesh["Geometry"], json::parse(R"({"Polygons":156,"Vertices":168,"BoundingBox":[0,0,0,20,15,3]})"));
    EXPECT_FALSE(tree["Tree"][0].contains("Geometry"));
}

TEST(Tree, ACurveHasItsPiecesAndItsBox)
{
    TempFolder folder;
    // A quarter of a circle around the origin.
    folder.Write("s.geo", GeometryInfoHeader(1).Bytes() + RecordFront(3, "c") +
                              ByteBuilder()
                                  .Byte(0)
                                  .Byte(0)
                                  .F64(0)
                                  .F64(0)
                                  .F64(0)
                                  .F64(2)
                                  .F64(0)
                                  .F64(0)
                                  .F64(0)
                                  .F64(0)
                                  .F64(1)
                                  .F64(1)
                                  .F64(0)
                                  .F64(1.5707963267948966)
                                  .Bytes());
    folder.Write(
        "scene.xml",
        "<Scene><GeometryInfo GenerateGeometry=\"True\" Path=\"s.geo\"/>" + File("p") +
            "<IPart ID=\"p\" Label=\"p\"><ChildSet><ICurve ID=\"c\" Label=\"arc\"/></ChildSet></IPart></Scene>");
    ToolRun const run = RunTool({"tree", folder.NarrowPathOf("scene.xml")});
    EXPECT_THAT(run.out, HasSubstr("ICurve \"arc\" c, visible, 1 piece, from (0, 0, 0) to (2, 2, 0)\n")) << run.out;
}

TEST(Tree, ABodyHasItsPartsOrNone)
{
    TempFolder folder;
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.back()->AddDataId("b");
    folder.Write("s.sab", StoreBytes(entities, false));
    folder.Write("scene.xml",
                 "<Scene><SatInfo Path=\"s.sab\"/>" + File("p") +
                     "<IPart ID=\"p\" Label=\"p\"><ChildSet><IBrep ID=\"b\" Label=\"box\" Visibility=\"1\"/>"
                     "<IBrep ID=\"c\" Label=\"lost\"/></ChildSet></IPart></Scene>");
    std::string const out = RunTool({"tree", folder.NarrowPathOf("scene.xml")}).out;
    EXPECT_THAT(out, HasSubstr("IBrep \"box\" b, visible, 1 solid, 6 faces, 12 edges, 8 vertices\n"));
    EXPECT_THAT(out, HasSubstr("IBrep \"lost\" c, hidden, no body\n"));
}

TEST(Tree, JsonHasTheSameFacts)
{
    json const tree = json::parse(RunTool({"tree", kAs1, "--json"}).out);
    EXPECT_EQ(tree["Totals"]["Assemblies"], 4);
    EXPECT_EQ(tree["Totals"]["PartOccurrences"], 18);
    json const& top = tree["Tree"][0]["Children"][0];
    EXPECT_EQ(top["Kind"], "IAssembly");
    EXPECT_EQ(top["ChildCount"], 4);
    EXPECT_EQ(top["Children"][0]["Target"]["Label"], "rod-assembly");
    EXPECT_EQ(top["Children"][0]["Visible"], true);
}

TEST(Tree, DepthEndsTheLinesAndNotTheTotals)
{
    ToolRun const run = RunTool({"tree", kAs1, "--depth", "1"});
    EXPECT_EQ(Lines(run.out).size(), 3U);
    EXPECT_THAT(run.out, HasSubstr("28 occurrences"));
    EXPECT_EQ(Lines(RunTool({"tree", kAs1, "--depth", "0"}).out).size(), 2U);
}

TEST(Tree, HiddenInstancesAreSaidToBe)
{
    TreeRun const run("<S>" + File("a") + Assembly("a", Instance("i", "p", "0")) + "<IPart ID=\"p\" Label=\"\"/></S>");
    EXPECT_THAT(run.out, HasSubstr("IInstance \"i\" i -> IPart \"\" p, hidden"));
}

TEST(Tree, ColourIsShownWhenItIsAskedFor)
{
    EXPECT_NE(RunTool({"tree", kAs1, "--color", "always"}).out.find('\x1b'), std::string::npos);
    EXPECT_EQ(RunTool({"tree", kAs1, "--color", "blue"}).status, 2);
}

TEST(Tree, ACycleIsShownAndNotEntered)
{
    TreeRun const run("<S>" + File("i") + Assembly("a", Instance("i", "f")) + "</S>");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("cycle"));
    EXPECT_EQ(Lines(run.out).size(), 3U);
}

TEST(Tree, AChildThatIsListedTwiceOccursOnce)
{
    std::string const xml = "<S>" + File("a") +
                            Assembly("a", Instance("i", "b") + "<IPoint ID=\"o\" Label=\"\" Visibility=\"1\"/>" +
                                              Instance("i", "b") + Instance("j", "b")) +
                            Assembly("b", Instance("k", "p")) + "<IPart ID=\"p\" Label=\"\"/></S>";
    TreeRun const run(xml);
    std::vector<std::string> const lines = Lines(run.out);
    ASSERT_EQ(lines.size(), 9U) << run.out;
    EXPECT_EQ(lines[1], "└─ IAssembly \"a\" a, 4 children");
    EXPECT_EQ(lines[2], "   ├─ IInstance \"i\" i -> IAssembly \"b\" b, visible, 1 child");
    EXPECT_EQ(lines[3], "   │  └─ IInstance \"k\" k -> IPart \"\" p, visible, 0 children");
    EXPECT_EQ(lines[4], "   ├─ IPoint \"\" o, visible");
    EXPECT_EQ(lines[5], "   ├─ IInstance \"i\" i -> IAssembly \"b\" b, visible, 1 child, repeated");
    EXPECT_EQ(lines[6], "   └─ IInstance \"j\" j -> IAssembly \"b\" b, visible, 1 child");
    EXPECT_THAT(lines[8], HasSubstr("3 instances, 5 occurrences (2 of parts)"));
    json const tree = json::parse(TreeRun(xml, {"--json"}).out);
    json const& children = tree["Tree"][0]["Children"][0]["Children"];
    EXPECT_FALSE(children[0].contains("Repeated"));
    EXPECT_EQ(children[2]["Repeated"], true);
    EXPECT_EQ(children[2]["Children"].size(), 0U);
}

TEST(Tree, WhatIsMissingStandsWhereItIsListed)
{
    TreeRun const run(
        "<S><IFile ID=\"f\" Label=\"\"><ChildSet><C ID=\"lost\"/><C ID=\"p\"/><C ID=\"gone\"/></ChildSet>"
        "</IFile><IPart ID=\"p\" Label=\"\"/></S>");
    std::vector<std::string> const lines = Lines(run.out);
    ASSERT_EQ(lines.size(), 5U) << run.out;
    EXPECT_EQ(lines[1], "├─ missing \"\" ");
    EXPECT_EQ(lines[2], "├─ IPart \"\" p, 0 children");
    EXPECT_EQ(lines[3], "└─ missing \"\" ");
    EXPECT_EQ(lines[4], "1 file, 0 assemblies, 1 part, 0 instances, 1 occurrence (1 of a part), deepest level 1");
}

TEST(Tree, ATreeOfMoreOccurrencesThanCouldBeWalkedIsCut)
{
    std::string xml = "<S>" + File("a0");
    for (int i = 0; i < 70; ++i)
        xml += Assembly("a" + std::to_string(i), Instance("l" + std::to_string(i), "a" + std::to_string(i + 1)) +
                                                     Instance("r" + std::to_string(i), "a" + std::to_string(i + 1)));
    xml += Assembly("a70", "") + "</S>";
    TreeRun const run(xml, {"--max-occurrences", "1000"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Lines(run.out).size(), 1001U);
    EXPECT_THAT(run.out, HasSubstr("18446744073709551615 occurrences"));
    EXPECT_THAT(run.error, HasSubstr("--max-occurrences"));
    TreeRun const cut(xml, {"--max-occurrences", "10", "--json"});
    EXPECT_FALSE(json::parse(cut.out, nullptr, false).is_discarded());
}

TEST(Tree, ALabelCannotWriteToTheTerminal)
{
    TreeRun const run("<S><IFile ID=\"f\" Label=\"a&#x85;&#x202E;b&#10;c&quot;\"/></S>");
    EXPECT_EQ(Lines(run.out).size(), 2U);
    EXPECT_EQ(run.out.find("\u202E"), std::string::npos);
}

TEST(Tree, AHundredThousandLevelsAreShownOnASmallStack)
{
    // Read from the innermost outwards, so that no reading is nested.
    std::string xml = "<S><IPart ID=\"000000\" Label=\"\"/>";
    auto const id = [](int i)
    {
        std::string text = std::to_string(i);
        return std::string(6 - text.size(), '0') + text;
    };
    for (int i = 1; i <= 100000; ++i)
        xml += Assembly(id(i), Instance("i" + id(i), id(i - 1)));
    xml += "<IFile ID=\"z\" Label=\"\"><ChildSet><C ID=\"100000\"/></ChildSet></IFile></S>";
    ResourceLimit const stack(RLIMIT_STACK, rlim_t{512} * 1024);
    TreeRun const run(xml);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("deepest level 100001"));
    EXPECT_LT(run.out.size(), 40U * 1000 * 1000);
    TreeRun const asJson(xml, {"--json"});
    EXPECT_EQ(asJson.status, 0);
    EXPECT_LT(asJson.out.size(), 200U * 1000 * 1000);
}

TEST(Tree, TwoHundredThousandOccurrencesAreShownWithoutTheTextInMemory)
{
    std::string xml = "<S>" + File("a");
    std::string children;
    for (int i = 0; i < 1000; ++i)
        children += Instance("t" + std::to_string(i), "b");
    xml += Assembly("a", children);
    children.clear();
    for (int i = 0; i < 200; ++i)
        children += Instance("u" + std::to_string(i), "p");
    xml += Assembly("b", children) +
           "<IPart ID=\"p\" Label=\"a part with a long label, so that its lines are long\"/></S>";
    TreeRun const whole(xml);
    TreeRun const front(xml, {"--depth", "1"});
    EXPECT_EQ(whole.status, 0);
    EXPECT_THAT(whole.out, HasSubstr("201001 occurrences (200000 of parts)"));
    EXPECT_GT(whole.out.size(), 15U * 1000 * 1000);
#if !defined(__SANITIZE_ADDRESS__)
    // The sanitizer keeps back what was freed, so that its memory says nothing.
    EXPECT_LT(whole.peakMemory, front.peakMemory + 4096);
#endif
    ToolRun const dump = RunTool({"dump", whole.folder.NarrowPathOf("scene.xml")});
    EXPECT_EQ(dump.status, 0);
}

TEST(Tree, ErrorsAreOneSentenceWithFileAndCause)
{
    ToolRun const missing = RunTool({"tree", "/nowhere/scene.xml"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.error, HasSubstr("/nowhere/scene.xml"));
    EXPECT_THAT(missing.error, HasSubstr("No such file"));
    EXPECT_EQ(Lines(missing.error).size(), 1U);
    TreeRun const rootless("<S/>");
    EXPECT_EQ(rootless.status, 1);
    EXPECT_EQ(Lines(rootless.error).size(), 1U);
}

TEST(Tree, BadArgumentsAreStatusTwo)
{
    EXPECT_EQ(RunTool({}).status, 2);
    EXPECT_EQ(RunTool({"tree"}).status, 2);
    EXPECT_EQ(RunTool({"fly", kAs1}).status, 2);
    EXPECT_EQ(RunTool({"tree", kAs1, "--depth", "x"}).status, 2);
    EXPECT_EQ(RunTool({"--help"}).status, 0);
    EXPECT_THAT(RunTool({"--version"}).out, HasSubstr("kvr 0."));
}

TEST(Tree, AReaderThatGoesAwayEndsTheProgramByItsSignal)
{
    EXPECT_EQ(RunToolWithoutReader({"tree", kAs1}), 128 + SIGPIPE);
    EXPECT_EQ(RunToolWithoutReader({"dump", kAs1}), 128 + SIGPIPE);
    EXPECT_EQ(RunToolWithoutReader({"--help"}), 128 + SIGPIPE);
}

}  // namespace

}  // namespace KVR::Test
