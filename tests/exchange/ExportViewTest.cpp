#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "exchange/ExportScene.h"
#include "exchange/view/ViewPage.h"
#include "tests/exchange/ExportScene.h"
#include "tests/exchange/ViewFile.h"

// The file that "kvr view" writes; docs/viewer.md has its layout.
namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string ExampleOf(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + '/' + name + '/' + name + ".xml";
}

// A run of "kvr view", and what is in the file.
ViewFile View(std::string const& source, TempFolder const& folder, std::vector<std::string> const& options = {},
              std::string const& remark = {})
{
    std::string const target = folder.NarrowPathOf("view.html");
    std::vector<std::string> arguments{"view", source, target};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ToolRun const run = RunTool(arguments);
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, HasSubstr(remark));
    return ViewFile(target);
}

// A scene of a test's own text as such a file.
ViewFile ViewOf(ExportScene& scene, std::string const& text, std::vector<std::string> const& options = {})
{
    ToolRun const run = scene.Export(text, "view.html", options);
    EXPECT_EQ(run.status, 0) << run.error;
    return ViewFile(scene.PathOf("view.html"));
}

std::string TwoOfOne(std::string const& declared = {}, std::string const& crossLevel = {})
{
    return UnderTop(Instance("left", "p") + Instance("right", "p", "1 0 0 20 0 1 0 0 0 0 1 0 0 0 0 1"), crossLevel,
                    declared) +
           PartOfMesh();
}

std::size_t TrianglesOfStl(std::string const& path)
{
    return (std::filesystem::file_size(path) - 84) / 50;
}

}  // namespace

TEST(ExportView, AMeshIsThereOnceAndItemsNameIt)
{
    ExportScene scene;
    ViewFile const view = ViewOf(scene.Triangle("m"), TwoOfOne());
    EXPECT_EQ(view.document.at("meshes").size(), 1U);
    EXPECT_FALSE(view.document.contains("nodes"));
    EXPECT_EQ(view.scene.at("counts"),
              json::parse(R"({"triangles":1,"drawnTriangles":2,"occurrences":4,"components":3,"meshes":1})"));
    EXPECT_EQ(view.scene.at("occurrences").at("parent"), json::parse("[-1,0,1,1]"));
    EXPECT_EQ(view.scene.at("items").at("occurrence"), json::parse("[2,3]"));
    EXPECT_EQ(view.scene.at("items").at("geometry"), json::parse("[0,0]"));
    EXPECT_THAT(view.Transform(view.At<std::size_t>("occurrences", "transform", 3)),
                ElementsAre(1, 0, 0, 20, 0, 1, 0, 0, 0, 0, 1, 0));
    json const& part = view.scene.at("components").at(2);
    EXPECT_EQ(part.at("id"), "p");
    EXPECT_EQ(view.scene.at("components").at(1).at("placements").at(1).at("id"), "right");
    EXPECT_EQ(view.scene.at("unit"), json::parse(R"({"name":"millimeter","symbol":"mm","metres":0.001})"));
    EXPECT_EQ(view.scene.at("box"), json::parse(R"({"low":[0,0,0],"high":[21,1,0]})"));
    EXPECT_EQ(view.scene.at("source"), json::parse(R"({"file":"scene.xml"})"));
    EXPECT_EQ(view.title, "file");
}

TEST(ExportView, WhatIsHiddenIsThereMarked)
{
    ExportScene scene;
    ViewFile const view =
        ViewOf(scene.Triangle("m"),
               TwoOfOne({}, R"(<Visibilities><EntityVisibility Path="[left]" Visibility="0"/></Visibilities>)"));
    EXPECT_EQ(view.scene.at("occurrences").at("visible"), json::parse("[1,1,0,1]"));
    EXPECT_EQ(view.scene.at("items").at("visible"), json::parse("[1,1]"));
    EXPECT_EQ(view.scene.at("counts").at("drawnTriangles"), 1);
    EXPECT_EQ(view.DrawnTriangles(), 1U);
}

TEST(ExportView, NothingOfWhatIsLeftOutIsInTheFile)
{
    ExportScene scene;
    std::string const text =
        UnderTop(
            Instance("left", "p") + Instance("secret", "q"), {},
            R"(<LayerSet><ILayer ID="l" Label="L"><LayerInfo ID="1"/><GeometryItems Items="p,q,n"/></ILayer></LayerSet>)") +
        PartOfMesh() +
        R"(<IPart ID="q" Label="hushed"><ChildSet><IPolygonMesh ID="n" Label="quiet" Visibility="1"/></ChildSet></IPart>)";
    scene.Triangle("m").Mesh("n", {0, 0, 0, 7, 0, 0, 0, 7, 0}, {{0, 1, 2}});
    ViewFile const view = ViewOf(scene, text, {"--hide", "secret"});
    EXPECT_EQ(view.document.at("meshes").size(), 1U);
    for (char const* const gone : {"secret", "hushed", "quiet", "\"q\"", "\"n\""})
        EXPECT_THAT(view.text, Not(HasSubstr(gone)));
    EXPECT_EQ(view.scene.at("layers").at(0).at("items"), json::parse(R"(["p"])"));
}

TEST(ExportView, ADrawnTriangleCountsAsInOtherFormats)
{
    for (std::string const name : {"as1-oc-214", "lcr_follower_arm", "complete"})
    {
        TempFolder folder;
        ViewFile const view = View(ExampleOf(name), folder);
        ASSERT_EQ(RunTool({"export", ExampleOf(name), folder.NarrowPathOf("a.stl")}).status, 0);
        std::size_t const drawn = TrianglesOfStl(folder.NarrowPathOf("a.stl"));
        EXPECT_EQ(view.DrawnTriangles(), drawn) << name;
        EXPECT_EQ(view.scene.at("counts").at("drawnTriangles"), drawn) << name;
    }
}

TEST(ExportView, AModelIsImportedAndDrawnAsTheCertificateCounts)
{
    TempFolder folder;
    std::string const model = std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp";
    ViewFile const view = View(model, folder);
    EXPECT_EQ(view.scene.at("source").at("file"), "as1-oc-214.stp");
    ToolRun const run = RunTool({"certify", "--json", model});
    json const rows = json::parse(run.out).at("Rows");
    auto const row =
        std::find_if(rows.begin(), rows.end(), [](json const& one) { return one.at("Name") == "triangles"; });
    ASSERT_NE(row, rows.end()) << run.out;
    EXPECT_EQ(row->at("scene"), std::to_string(view.DrawnTriangles()));
}

TEST(ExportView, ALevelOfDetailHasTheMeshesThatReferToIt)
{
    ExportScene scene;
    std::string text = TwoOfOne(R"(<LodSet><ILod ID="fine" Label="Fine"/><ILod ID="coarse"/></LodSet>)");
    std::string const mesh = "<IPolygonMesh ID=\"m\"";
    text.replace(text.find(mesh), mesh.size(), mesh + " LODID=\"fine\"");
    json const levels = ViewOf(scene.Triangle("m"), text).scene.at("lods");
    ASSERT_EQ(levels.size(), 2U);
    EXPECT_EQ(levels.at(0).at("label"), "Fine");
    EXPECT_EQ(levels.at(0).at("items"), json::parse(R"(["m"])"));
    EXPECT_EQ(levels.at(1).at("items"), json::array());
}

TEST(ExportView, TheSceneIsAsTheSchemaSays)
{
    TempFolder folder;
    std::vector<std::string> words{KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS,
                                   std::string(KVR_DOCS_DIR) + "/viewer.schema.json"};
    for (std::string const& source : {ExampleOf("as1-oc-214"), ExampleOf("lcr_follower_arm"), ExampleOf("complete"),
                                      std::string(KVR_EXAMPLES_DIR) + "/models/nist_ctc_03_ap203.stp",
                                      std::string(KVR_EXAMPLES_DIR) + "/models/iso14405_fig17a.stp"})
    {
        std::string const name = std::to_string(words.size()) + ".json";
        folder.Write(name, View(source, folder).text);
        words.push_back(folder.NarrowPathOf(name));
    }
    ToolRun const run = RunProgram(words);
    EXPECT_EQ(run.status, 0) << run.out << run.error;
    folder.Write("bad.json", R"({"format":"kvr-view"})");
    words.back() = folder.NarrowPathOf("bad.json");
    EXPECT_EQ(RunProgram(words).status, 1);
}

TEST(ExportView, TheGeometryPassesTheValidator)
{
    TempFolder folder;
    for (std::string const name : {"as1-oc-214", "complete"})
    {
        folder.Write("a.glb", View(ExampleOf(name), folder).glb);
        ToolRun const run = RunProgram({KVR_NODE, KVR_GLTF_SCRIPT, KVR_GLTF_VALIDATOR, folder.NarrowPathOf("a.glb")});
        EXPECT_EQ(run.status, 0) << run.out;
    }
}

TEST(ExportView, NothingInANameBecomesMarkup)
{
    std::string const evil = "</title></script><script>alert(1)</script><!-- \u202E\u2066 {{KVR_SCENE}} &amp; \" '";
    std::string escaped;
    for (char const c : evil)
        escaped += c == '<' ? "&lt;" : c == '&' ? "&amp;" : c == '"' ? "&quot;" : std::string(1, c);
    ExportScene scene;
    std::string text = TwoOfOne();
    text.replace(text.find("Label=\"file\""), 12, "Label=\"" + escaped + "\"");
    text.replace(text.find("Label=\"Mesh\""), 12, "Label=\"" + escaped + "\"");
    ViewFile const view = ViewOf(scene.Triangle("m"), text);
    EXPECT_EQ(view.scene.at("title"), evil);
    EXPECT_EQ(view.scene.at("geometry").at(0).at("label"), evil);
    EXPECT_THAT(view.title, Not(HasSubstr("<")));
    EXPECT_THAT(view.title, HasSubstr("&lt;/title&gt;"));
    EXPECT_THAT(view.title, Not(HasSubstr("\u202E")));
    ExportScene plain;
    EXPECT_EQ(view.page, ViewOf(plain.Triangle("m"), TwoOfOne()).page);
}

TEST(ExportView, APolicyLetsTheOwnScriptRunAlone)
{
    ExportScene scene;
    std::string const page = ViewOf(scene.Triangle("m"), TwoOfOne()).page;
    std::size_t const policy = page.find("http-equiv=\"Content-Security-Policy\"");
    ASSERT_NE(policy, std::string::npos);
    EXPECT_LT(policy, page.find("<script"));
    EXPECT_LT(policy, page.find("<style"));
    std::string const content = page.substr(policy, page.find('>', policy) - policy);
    EXPECT_THAT(content, HasSubstr("default-src 'none'"));
    EXPECT_THAT(content, HasSubstr("script-src 'sha256-"));
    EXPECT_THAT(content, Not(HasSubstr("unsafe-inline")));
    EXPECT_THAT(content, Not(HasSubstr("unsafe-eval")));
    EXPECT_THAT(content, Not(HasSubstr("http:")));
    EXPECT_THAT(content, Not(HasSubstr("https:")));
}

TEST(ExportView, ANameOfTenMegabytesIsKeptAndTheTitleCut)
{
    ExportScene scene;
    std::string text = TwoOfOne();
    std::string const name(10'000'000, 'n');
    text.replace(text.find("Label=\"file\""), 12, "Label=\"" + name + "\"");
    ViewFile const view = ViewOf(scene.Triangle("m"), text);
    EXPECT_EQ(view.scene.at("title").get<std::string>().size(), name.size());
    EXPECT_EQ(view.title, std::string(200, 'n'));
    EXPECT_LT(std::filesystem::file_size(scene.PathOf("view.html")), 2'000'000U);
}

TEST(ExportView, ATitleIsCutBetweenCharacters)
{
    std::string text;
    for (int i = 0; i < 300; ++i)
        text += "\U0001F600";
    EXPECT_EQ(TitleText(text), text.substr(0, 800));
    EXPECT_EQ(TitleText("a\nb\x7F\u202Ec"), "a b  c");
    EXPECT_EQ(TitleText("\xFF<"), "\uFFFD&lt;");
}

TEST(ExportView, ViewsHaveTheirMembersAndCamerasInTheUnitOfTheScene)
{
    ExportScene scene;
    std::string const declared = R"(<CameraSet><ICamera ID="eye" Type="kCameraType_Parallel"
 ViewWindowHeightForParallelCamera="2"><Unit LengthUnit="kUnitType_Centimeter"/><CameraPosition X="1" Y="2" Z="3"/>
<CameraDirection X="0" Y="2" Z="0"/><CameraUpDirection X="0" Y="1" Z="1"/><ISectionCamera><PlaneData>
<Origin X="0" Y="0" Z="5"/><Normal X="0" Y="0" Z="3"/></PlaneData></ISectionCamera></ICamera></CameraSet>
<ViewSet><IView ID="v" Label="Open"><Unit LengthUnit="kUnitType_Centimeter"/><ViewMember>
<ViewMemberChild><OccurrencePath Path="[right]"/><EntityVisibility Visibility="1"/>
<Transform>0 -1 0 3 1 0 0 0 0 0 1 0 0 0 0 1</Transform></ViewMemberChild>
<ViewMemberChild><OccurrencePath Path="[left][m]"/></ViewMemberChild>
<ViewMemberChild><OccurrencePath Path="[nowhere]"/></ViewMemberChild></ViewMember>
<CameraSet><CameraRef ID="gone"/><CameraRef ID="eye"/></CameraSet></IView></ViewSet>)";
    ViewFile const view = ViewOf(scene.Triangle("m"), TwoOfOne(declared));
    json const& camera = view.scene.at("cameras").at(0);
    EXPECT_EQ(camera.at("position"), json::parse("[10,20,30]"));
    EXPECT_EQ(camera.at("direction"), json::parse("[0,1,0]"));
    EXPECT_EQ(camera.at("up"), json::parse("[0,0,1]"));
    EXPECT_EQ(camera.at("height"), 20);
    EXPECT_EQ(camera.at("sections"), json::parse(R"([{"origin":[0,0,50],"normal":[0,0,1]}])"));
    json const& saved = view.scene.at("views").at(0);
    EXPECT_EQ(saved.at("label"), "Open");
    EXPECT_EQ(saved.at("cameras"), json::parse("[0]"));
    EXPECT_EQ(saved.at("unresolved"), 1);
    EXPECT_EQ(saved.at("members").at("occurrence"), json::parse("[3,2]"));
    EXPECT_EQ(saved.at("members").at("geometry"), json::parse("[-1,0]"));
    EXPECT_EQ(saved.at("members").at("visible"), json::parse("[1,0]"));
    EXPECT_THAT(view.Transform(saved.at("members").at("transform").at(0)),
                ElementsAre(0, -1, 0, 30, 1, 0, 0, 0, 0, 0, 1, 0));
    EXPECT_EQ(saved.at("members").at("transform").at(1), -1);
}

TEST(ExportView, BodiesTellTheirMeasuresAndTheKindsOfFacesAndEdges)
{
    TempFolder folder;
    ViewFile const view = View(std::string(KVR_EXAMPLES_DIR) + "/models/nist_ctc_03_ap203.stp", folder);
    json const& all = view.scene.at("geometry");
    auto const nut = std::find_if(
        all.begin(), all.end(),
        [](json const& one) { return one.contains("body") && one.dump().find("\"cylinder\"") != std::string::npos; });
    ASSERT_NE(nut, all.end());
    json const& body = all.at(nut->at("body").get<std::size_t>());
    EXPECT_EQ(body.at("kind"), "body");
    EXPECT_FALSE(body.contains("mesh"));
    EXPECT_GT(body.at("volume"), 0.0);
    json const& faces = nut->at("faces");
    ASSERT_EQ(faces.at("surface").size(), nut->at("faceCount"));
    double area = 0.0;
    for (json const& one : faces.at("area"))
        area += one.get<double>();
    EXPECT_NEAR(area, body.at("area"), 1e-9 * area);
    for (std::size_t i = 0; i < faces.at("surface").size(); ++i)
        EXPECT_EQ(faces.at("radius").at(i).is_number(), faces.at("surface").at(i) == "cylinder") << i;
    json const& edges = nut->at("edges");
    for (std::size_t i = 0; i < edges.at("curve").size(); ++i)
    {
        EXPECT_EQ(edges.at("radius").at(i).is_number(), edges.at("curve").at(i) == "circle") << i;
        EXPECT_GT(edges.at("length").at(i), 0.0) << i;
    }
}

TEST(ExportView, ThinningReachesWhatIsAskedForAndSaysSo)
{
    TempFolder folder;
    ViewFile const whole = View(ExampleOf("lcr_follower_arm"), folder);
    ViewFile const thin = View(ExampleOf("lcr_follower_arm"), folder, {"--max-triangles", "40000"}, "thinned from ");
    EXPECT_LE(thin.DrawnTriangles(), 40'000U);
    EXPECT_GT(thin.DrawnTriangles(), 10'000U);
    EXPECT_EQ(thin.scene.at("thinned").at("from"), whole.DrawnTriangles());
    EXPECT_EQ(thin.scene.at("thinned").at("to"), thin.DrawnTriangles());
    EXPECT_THAT(thin.scene.at("remarks").at(0), HasSubstr("thinned from"));
    EXPECT_EQ(thin.scene.at("items"), whole.scene.at("items"));
    EXPECT_FALSE(whole.scene.contains("thinned"));
    // Edges stay, and each mesh keeps something.
    json const& edges = thin.Primitive(0, "edges");
    EXPECT_EQ(thin.Floats(edges.at("attributes").at("POSITION")),
              whole.Floats(whole.Primitive(0, "edges").at("attributes").at("POSITION")));
    ViewFile const same = View(ExampleOf("as1-oc-214"), folder, {"--max-triangles", "1000000"});
    EXPECT_FALSE(same.scene.contains("thinned"));
}

TEST(ExportView, TheFileIsSmallAndTheSameEachTime)
{
    TempFolder folder;
    ViewFile const first = View(ExampleOf("lcr_follower_arm"), folder);
    std::string const path = folder.NarrowPathOf("view.html");
    auto const bytesOf = [&]
    {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    std::string const bytes = bytesOf();
    std::string const& page = first.page;
    std::size_t const geometry = bytes.find("</script>", bytes.find("kvr-geometry\">")) - bytes.find("kvr-geometry\">");
    // Base64 takes 4 bytes for 3.
    EXPECT_LT(static_cast<double>(bytes.size()), 1.35 * 0.75 * static_cast<double>(geometry) + 700'000.0);
    EXPECT_LT(page.size(), 700'000U);
    View(ExampleOf("lcr_follower_arm"), folder);
    EXPECT_EQ(bytesOf(), bytes);
}

TEST(ExportView, ATargetWithAnotherExtensionIsRefused)
{
    TempFolder folder;
    ToolRun const run = RunTool({"view", ExampleOf("as1-oc-214"), folder.NarrowPathOf("a.glb")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, HasSubstr("does not end in .html"));
    EXPECT_TRUE(CanView());
    ToolRun const wrong = RunTool({"view", "--only", "nuts", ExampleOf("as1-oc-214"), folder.NarrowPathOf("a.html")});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.error, HasSubstr("nothing in it has the name \"nuts\", the nearest are \"nut\""));
    EXPECT_FALSE(std::filesystem::exists(folder.NarrowPathOf("a.html")));
}

}  // namespace KVR::Test
