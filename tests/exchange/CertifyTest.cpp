#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "exchange/certify/Certificate.h"
#include "tests/exchange/MeshFiles.h"
#include "tests/exchange/SceneComparison.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using namespace Certification;

using nlohmann::json;
using testing::IsEmpty;

std::string Model(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/models/" + name;
}

class CertifiedModel : public testing::TestWithParam<char const*>
{
};

// A name of a file as that of a test.
std::string TestName(testing::TestParamInfo<char const*> const& test)
{
    std::string name = test.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
}

class RoundModel : public testing::TestWithParam<char const*>
{
};

Certificate::Row const& RowOf(Certificate const& certificate, std::string const& name)
{
    for (Certificate::Row const& row : certificate.Rows())
        if (row.name == name)
            return row;
    throw std::runtime_error("no row " + name);
}

}  // namespace

TEST_P(CertifiedModel, HoldsTheSame)
{
    ToolRun const run = RunTool({"certify", "--json", Model(GetParam())});
    json const certificate = json::parse(run.out);
    for (json const& row : certificate.at("Rows"))
        EXPECT_EQ(row.at("Verdict"), "equal") << row;
    EXPECT_EQ(run.status, 0) << run.error;
}

INSTANTIATE_TEST_SUITE_P(Certify, CertifiedModel,
                         testing::Values("as1-oc-214.stp", "nist_ctc_03_ap203.stp", "iso14405_fig17a.stp",
                                         "nist_plate_creo_lbls.stp", "lcr_follower_arm.step"),
                         TestName);

TEST(Certify, ThreeRoundsOfImportAndExportChangeNothing)
{
    TempFolder const folder;
    std::string model = Model("as1-oc-214.stp");
    std::string first;
    for (int round = 0; round < 3; ++round)
    {
        std::string const number = std::to_string(round);
        std::string const scene = folder.NarrowPathOf("scene" + number + ".xml");
        std::string const step = folder.NarrowPathOf("round" + number + ".step");
        ASSERT_EQ(RunTool({"import", "--quiet", model, scene}).status, 0);
        ASSERT_EQ(RunTool({"export", "--quiet", scene, step}).status, 0);
        json const certificate = json::parse(RunTool({"certify", "--json", step}).out);
        for (json const& row : certificate.at("Rows"))
            EXPECT_EQ(row.at("Verdict"), "equal") << row;
        std::string text;
        for (json const& row : certificate.at("Rows"))
            text += row.at("Name").get<std::string>() + ": " + row.at("source").dump() + "\n";
        if (round == 0)
            first = text;
        EXPECT_EQ(text, first) << "round " << round;
        model = step;
    }
}

TEST_P(RoundModel, ThreeRoundsChangeNothing)
{
    TempFolder const folder;
    std::string model = Model(GetParam());
    json first;
    for (int round = 0; round <= 3; ++round)
    {
        std::string const number = std::to_string(round);
        std::string const scene = folder.NarrowPathOf("scene" + number + ".xml");
        ASSERT_EQ(RunTool({"import", "--quiet", "--no-mesh", model, scene}).status, 0);
        json const content = SceneContent(scene);
        if (round == 0)
            first = content;
        EXPECT_THAT(DifferencesOf(first, WithoutAddedMeasures(first, content)), IsEmpty()) << "round " << round;
        // What the first export adds stays.
        if (round == 1)
            first = content;
        if (round == 3)
            break;
        model = folder.NarrowPathOf("round" + number + ".step");
        ToolRun const exported = RunTool({"export", scene, model});
        ASSERT_EQ(exported.status, 0);
        EXPECT_EQ(exported.error, "");
    }
}

INSTANTIATE_TEST_SUITE_P(Certify, RoundModel,
                         testing::Values("as1-oc-214.stp", "nist_ctc_03_ap203.stp", "iso14405_fig17a.stp",
                                         "nist_plate_creo_lbls.stp", "lcr_follower_arm.step"),
                         TestName);

TEST(Certify, AModelOfMeshesHasNoStepColumn)
{
    TempFolder const folder;
    folder.Write(
        "a.stl",
        "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n"
        "endsolid a\n");
    ToolRun const run = RunTool({"certify", folder.NarrowPathOf("a.stl")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.out.find("STEP"), std::string::npos);
    EXPECT_NE(run.out.find("GLB"), std::string::npos);
}

TEST(Certify, TheTableIsNarrowAndNamesWhatDiffers)
{
    TempFolder const folder;
    std::ifstream file(Model("as1-oc-214.stp"));
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    folder.Write("<b>olt.stp", text);
    std::string const model = folder.NarrowPathOf("<b>olt.stp");
    std::size_t const place = text.find("'bolt_1'");
    ASSERT_NE(place, std::string::npos);
    folder.Write("other.stp", text.replace(place, 8, "'bolz_1'"));
    ToolRun const run = RunTool(
        {"certify", "--against", folder.NarrowPathOf("other.stp"), "--html", folder.NarrowPathOf("page.html"), model});
    EXPECT_EQ(run.status, 1) << run.error;
    EXPECT_NE(run.out.find("names: other: 'bolt_1' is missing"), std::string::npos) << run.out;
    std::istringstream lines(run.out.substr(0, run.out.find("occurrences: other")));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 100U) << line;
    std::ifstream page(folder.NarrowPathOf("page.html"));
    std::string const html((std::istreambuf_iterator<char>(page)), std::istreambuf_iterator<char>());
    EXPECT_NE(html.find("&lt;b&gt;olt"), std::string::npos);
    EXPECT_EQ(html.find("<b>olt"), std::string::npos);
    // A picture of each side, or a sentence.
    EXPECT_TRUE(html.find("<img alt=\"source\"") != std::string::npos ||
                html.find("There is no picture of source") != std::string::npos);
}

TEST(Certify, AModelThatCannotBeReadGetsOneSentence)
{
    ToolRun const run = RunTool({"certify", Model("none.stp")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.error.find("there is no such file"), std::string::npos);
}

TEST(Certificate, ADifferenceBeyondTheToleranceIsOne)
{
    auto const facts = [](double volume, double x)
    {
        ModelFacts made;
        made.hasBodies = true;
        ModelFacts::Occurrence& part = made.occurrences.emplace_back();
        part.path = part.name = part.componentName = "a";
        part.isPart = true;
        part.solids = 5;
        part.bodies.volume = part.bodies.absoluteVolume = volume;
        part.bodies.AddPoint({x, 0, 0});
        part.bodies.AddPoint({3, 4, 0});
        return made;
    };
    auto const isGood = [](ModelFacts const& source, ModelFacts const& scene, char const* row) {
        return RowOf(Certificate({{"source", source}, {"scene", scene}}), row).isGood;
    };
    ModelFacts const source = facts(1.0, 0.0);
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", source}}).IsGood());
    EXPECT_TRUE(isGood(source, facts(1.0 + 5e-7, 0.0), "volume"));
    EXPECT_FALSE(isGood(source, facts(1.0 + 5e-6, 0.0), "volume"));
    // Relative to the diagonal, which is 5.
    EXPECT_TRUE(isGood(source, facts(1.0, 4e-6), "box"));
    EXPECT_FALSE(isGood(source, facts(1.0, 6e-6), "box"));
    ModelFacts other = source;
    other.occurrences.front().solids = 4;
    EXPECT_FALSE(isGood(source, other, "solids"));
    other.occurrences.front().componentName = "b";
    EXPECT_FALSE(isGood(source, other, "names"));
}

TEST(Certificate, AStageWithoutAPlaceForSomethingSaysSo)
{
    ModelFacts source;
    source.occurrences.emplace_back().path = "a";
    source.Add(kTable_Hidden, "a", {}, 3.0);
    ModelFacts other = source;
    other.tables.clear();
    Certificate const certificate({{"source", source}, {"GLB", other}});
    EXPECT_TRUE(certificate.IsGood());
    EXPECT_EQ(RowOf(certificate, "hidden").values, (std::vector<std::string>{"3", ""}));
    EXPECT_EQ(certificate.Absences(), (std::vector<std::string>{"not in GLB: 3 hidden"}));
}

TEST(Certificate, APartThatIsDividedIsComparedAsAWhole)
{
    auto const add = [](ModelFacts& facts, char const* path, bool isPart, double area)
    {
        ModelFacts::Occurrence& occurrence = facts.occurrences.emplace_back();
        occurrence.path = occurrence.component = path;
        occurrence.isPart = isPart;
        occurrence.bodies.area = area;
        facts.hasBodies = true;
    };
    ModelFacts source;
    add(source, "a", false, 0.0);
    add(source, "a/b", true, 3.0);
    ModelFacts scene;
    add(scene, "a", false, 0.0);
    add(scene, "a/b", false, 0.0);
    add(scene, "a/b/", true, 1.0);
    add(scene, "a/b/c", true, 2.0);
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
    scene.occurrences.back().bodies.area = 1.5;
    EXPECT_EQ(RowOf(Certificate({{"source", source}, {"scene", scene}}), "by path").differences.size(), 1U);
}

TEST(Certificate, ColoursThatRoundOtherwiseAreTheSame)
{
    ModelFacts source;
    source.Add(kTable_Colors, ModelFacts::Joined("a", "#ff8000ff"), {2.0});
    ModelFacts scene;
    scene.Add(kTable_Colors, ModelFacts::Joined("a", "#ff7f00ff"), {2.0});
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
    scene.tables.clear();
    scene.Add(kTable_Colors, ModelFacts::Joined("a", "#ff7e00ff"), {2.0});
    EXPECT_FALSE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
}

TEST(Certificate, ColoursOfPathsThatAreSwappedAreADifference)
{
    auto const facts = [](char const* ofA, char const* ofB)
    {
        ModelFacts made;
        for (auto const& [path, color] : {std::pair("a", ofA), std::pair("b", ofB)})
        {
            made.occurrences.emplace_back().path = path;
            made.Add(kTable_Colors, ModelFacts::Joined(path, color), {1.0});
        }
        return made;
    };
    Certificate const certificate(
        {{"source", facts("#000000ff", "#ffffffff")}, {"scene", facts("#ffffffff", "#000000ff")}});
    EXPECT_FALSE(certificate.IsGood());
    EXPECT_EQ(RowOf(certificate, "colours").differences.front(), "scene: 'a: #000000ff' is missing");
}

TEST(Certificate, SingleRootsAboveTheModelAreLeftOut)
{
    ModelFacts source;
    ModelFacts scene;
    for (char const* const path : {"a", "a/b"})
        source.occurrences.emplace_back().path = path;
    for (char const* const path : {"a", "a/x", "a/x/a", "a/x/a/b"})
        scene.occurrences.emplace_back().path = path;
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
    scene.occurrences.back().path = "a/x/a/c";
    EXPECT_FALSE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
}

TEST(Certificate, WhatMayBeThereIsNotMissed)
{
    ModelFacts source;
    source.Add(kTable_ViewMembers, ModelFacts::Joined("v", "datum A"), {}, 0.0);
    source.Add(kTable_ViewMembers, ModelFacts::Joined("v", "note"));
    ModelFacts scene;
    scene.Add(kTable_ViewMembers, ModelFacts::Joined("v", "note"));
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
    scene.Add(kTable_ViewMembers, ModelFacts::Joined("v", "datum A"));
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
    scene.Add(kTable_ViewMembers, ModelFacts::Joined("v", "datum B"));
    EXPECT_FALSE(Certificate({{"source", source}, {"scene", scene}}).IsGood());
}

TEST(ModelFacts, ComeBackFromTheirText)
{
    ModelFacts facts;
    facts.hasMesh = true;
    facts.occurrences.emplace_back().path = "ä/b";
    facts.occurrences.back().mesh.AddTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    facts.Add(kTable_Views, "top", {1.0, 2.0});
    ModelFacts const back = ModelFacts::Of(facts.Text());
    EXPECT_EQ(back.occurrences.at(0).path, "ä/b");
    EXPECT_EQ(back.occurrences.at(0).mesh.area, 0.5);
    EXPECT_EQ(back.tables.at(kTable_Views).at("top").numbers, (std::vector<double>{1.0, 2.0}));
    EXPECT_TRUE(back.hasMesh);
    EXPECT_FALSE(back.hasBodies);
}

TEST(Certify, APageNeverTakesThePlaceOfWhatIsCompared)
{
    TempFolder const folder;
    std::string const model = folder.NarrowPathOf("model.stp");
    std::string const link = folder.NarrowPathOf("page.html");
    std::filesystem::copy_file(Model("as1-oc-214.stp"), model);
    std::filesystem::create_symlink(model, link);
    auto const size = std::filesystem::file_size(model);
    for (std::string const& page : {model, link})
    {
        ToolRun const run = RunTool({"certify", "--html", page, model});
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.error, testing::HasSubstr("would take the place of what is compared"));
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(std::filesystem::file_size(model), size);
    }
}

TEST(Certify, APageThatCannotBeWrittenLeavesNothingBehind)
{
    TempFolder const folder;
    folder.Write("a.stl", BinaryStl(BoxTriangles(1, 1, 1)));
    std::string const page = folder.NarrowPathOf("page");
    std::filesystem::create_directory(page);
    ToolRun const run = RunTool({"certify", "--html", page, folder.NarrowPathOf("a.stl")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, testing::HasSubstr("the page cannot be written"));
    EXPECT_TRUE(std::filesystem::is_empty(page));
    EXPECT_FALSE(std::filesystem::exists(page + ".part"));
}

}  // namespace KVR::Test
