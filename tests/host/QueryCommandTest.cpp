#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;

std::string const kAs1 = KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml";

ToolRun Query(std::vector<std::string> options)
{
    options.insert(options.begin(), {"query", kAs1});
    ToolRun const run = RunTool(options);
    EXPECT_EQ(run.status, 0) << run.error;
    return run;
}

// A file of one part that is called as given, with a mass and a property of its own.
struct NamedPart
{
    explicit NamedPart(std::string const& label)
    {
        folder.Write("scene.xml",
                     "<Scene><IFile ID=\"f\" Label=\"f\"><ChildSet><C ID=\"a\"/></ChildSet></IFile>"
                     "<IAssembly ID=\"a\" Label=\"\"><ChildSet>"
                     "<IInstance ID=\"i\" Label=\"\" Visibility=\"1\"><Child ID=\"p\"/></IInstance>"
                     "<IInstance ID=\"j\" Label=\"x\" Visibility=\"1\"><Child ID=\"p\"/></IInstance>"
                     "</ChildSet></IAssembly><IPart ID=\"p\" Label=\"" +
                         label +
                         "\"><FileProperties><CustomProperties>"
                         "<CustomProperty Key=\"mass\" Type=\"kDouble\" Value=\"1.5\"/>"
                         "<CustomProperty Key=\"on\" Type=\"kBool\" Value=\"True\"/>"
                         "</CustomProperties></FileProperties><ChildSet/></IPart></Scene>");
    }
    ToolRun Run(std::vector<std::string> options) const
    {
        options.insert(options.begin(), {"query", folder.NarrowPathOf("scene.xml")});
        return RunTool(options);
    }
    TempFolder folder;
};

TEST(QueryCommand, PathsAreALineEach)
{
    EXPECT_EQ(Query({"assembly > part[component.name=rod or component.name=plate]"}).out,
              "as1-oc-214/as1/rod-assembly_1/rod_1\nas1-oc-214/as1/plate_1\n");
    EXPECT_EQ(Query({"--count", "part"}).out, "18\n");
    EXPECT_EQ(Query({"part[name=\"nobody\"]"}).out, "");
}

TEST(QueryCommand, ColumnsInText)
{
    EXPECT_EQ(Query({"--columns", "component.name, users ,visible,mass", "part[not shared]"}).out,
              "rod\t1\ttrue\t\nplate\t1\ttrue\t\n");
}

TEST(QueryCommand, VolumesOfBodiesAreThoseOfOpenCascade)
{
    ToolRun const run = Query({"--json", "--columns", "volume,area,box.z", "part[component.name=plate]"});
    json const plate = json::parse(run.out)["Occurrences"][0];
    EXPECT_NEAR(plate["volume"].get<double>(), 530626.887, 1e-2);
    EXPECT_NEAR(plate["box.z"].get<double>(), 20.0, 1e-9);
    EXPECT_EQ(Query({"--count", "assembly[volume>700000mm3 and volume<0.8l]"}).out, "1\n");
}

TEST(QueryCommand, CsvPutsTextsBetweenMarksAndKeepsLinesWhole)
{
    NamedPart const part("a, &quot;b&quot;\\&#10;c");
    EXPECT_EQ(part.Run({"--csv", "--columns", "component.name,property[\"on\"],mass", "part"}).out,
              "component.name,\"property[\"\"on\"\"]\",mass\n"
              "\"a, \"\"b\"\"\\\\nc\",true,1.5\n\"a, \"\"b\"\"\\\\nc\",true,1.5\n");
}

TEST(QueryCommand, JsonHasTheColumnsByTheirNames)
{
    json const answer = json::parse(Query({"--json", "part[instance.name=plate_1]"}).out);
    EXPECT_EQ(answer["Count"], 1);
    EXPECT_EQ(answer["Occurrences"][0],
              json({{"path", "as1-oc-214/as1/plate_1"}, {"kind", "part"}, {"name", "plate_1"}, {"id", "inst3"}}));
    NamedPart const part("p");
    json const typed = json::parse(
        part.Run({"--json", "--columns", "property['on'],property['mass'],property['x'],color,volume", "part"}).out);
    EXPECT_EQ(typed["Occurrences"][1], json({{"property[\"on\"]", true},
                                             {"property[\"mass\"]", 1.5},
                                             {"property[\"x\"]", nullptr},
                                             {"color", json::array()},
                                             {"volume", nullptr}}));
}

TEST(QueryCommand, ABillOfMaterialsHasEachComponentOnce)
{
    json const bill = json::parse(Query({"--bom", "--json"}).out);
    EXPECT_EQ(bill["Count"], 18);
    ASSERT_EQ(bill["Components"].size(), 5U);
    EXPECT_EQ(bill["Components"][0],
              json({{"Name", "nut"}, {"Id", "part5"}, {"Count", 8}, {"Mass", nullptr}, {"MassOfAll", nullptr}}));
    EXPECT_EQ(bill["WithoutMass"], 5);
    NamedPart const part("p");
    EXPECT_EQ(part.Run({"--bom"}).out,
              "Count  Mass (kg)  All (kg)  Name\n    2        1.5         3  p\n"
              "1 component, 2 occurrences, 3 kg\n");
    EXPECT_EQ(part.Run({"--bom", "--csv", "part[instance.name=x]"}).out,
              "name,id,count,mass,mass of all\np,p,1,1.5,1.5\n");
}

TEST(QueryCommand, AMistakeIsToldBeforeTheSceneIsRead)
{
    ToolRun const run = RunTool({"query", "/nowhere.xml", "part[nam=\"x\"]"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.error,
              "kvr: column 6 of the expression: there is no \"nam\" to ask for; did you mean name?\n"
              "  part[nam=\"x\"]\n       ^\n");
    ToolRun const columns = RunTool({"query", "/nowhere.xml", "part", "--columns", "path,"});
    EXPECT_EQ(columns.status, 2);
    EXPECT_THAT(columns.error, HasSubstr("column 6 of the list of columns: a column is expected"));
    EXPECT_EQ(RunTool({"query", kAs1}).status, 2);
    EXPECT_EQ(RunTool({"query", kAs1, "part", "--csv", "--json"}).status, 2);
    EXPECT_EQ(RunTool({"query", "/nowhere.xml", "part"}).status, 1);
}

TEST(QueryCommand, TheExporterTakesExpressionsAsWell)
{
    TempFolder folder;
    std::string const out = folder.NarrowPathOf("out.obj");
    EXPECT_EQ(RunTool({"export", "--quiet", "--only", "part[component.name=nut and depth=3]", kAs1, out}).status, 0);
    ToolRun const nothing = RunTool({"export", "--quiet", "--only", "part[component.name=nobody]", kAs1, out});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_THAT(nothing.error, HasSubstr("nothing in it fits the expression part[component.name=nobody]"));
    ToolRun const wrong = RunTool({"view", "--hide", "part[nam=x]", kAs1, folder.NarrowPathOf("out.html")});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.error, HasSubstr("  part[nam=x]\n       ^\n"));
}

}  // namespace

}  // namespace KVR::Test
