#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "exchange/certify/Certificate.h"
#include "tests/exchange/SceneComparison.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::IsEmpty;

std::string Model(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/models/" + name;
}

class CertifiedModel : public testing::TestWithParam<char const*>
{
};

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
    EXPECT_EQ(run.status, 0) << run.error << run.out;
    json const certificate = json::parse(run.out);
    EXPECT_EQ(certificate.at("Verdict"), "equal");
    for (json const& row : certificate.at("Rows"))
        EXPECT_LE(row.at("Difference").get<double>(), 1e-6) << row;
}

INSTANTIATE_TEST_SUITE_P(Certify, CertifiedModel,
                         testing::Values("as1-oc-214.stp", "nist_ctc_03_ap203.stp", "iso14405_fig17a.stp",
                                         "nist_plate_creo_lbls.stp"));

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
        EXPECT_EQ(certificate.at("Verdict"), "equal");
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
                                         "nist_plate_creo_lbls.stp", "lcr_follower_arm.step"));

TEST(Certify, AModelOfMeshesHasNoStepColumn)
{
    TempFolder const folder;
    folder.Write("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    ToolRun const run = RunTool({"certify", folder.NarrowPathOf("a.obj")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.out.find("STEP"), std::string::npos);
    EXPECT_NE(run.out.find("GLB"), std::string::npos);
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
    ModelFacts source;
    source.solids = 5;
    source.names = {"a", "b"};
    source.bodies.emplace().volume = 1.0;
    source.box = {0, 0, 0, 3, 4, 0};
    ModelFacts other = source;
    Certificate const same({{"source", source}, {"scene", other}});
    EXPECT_TRUE(same.IsGood());
    other.bodies->volume = 1.0 + 5e-7;
    EXPECT_TRUE(Certificate({{"source", source}, {"scene", other}}).IsGood());
    other.bodies->volume = 1.0 + 5e-6;
    EXPECT_FALSE(RowOf(Certificate({{"source", source}, {"scene", other}}), "volume").isGood);
    other = source;
    other.solids = 4;
    EXPECT_FALSE(RowOf(Certificate({{"source", source}, {"scene", other}}), "solids").isGood);
    other = source;
    other.names = {"a", "c"};
    EXPECT_FALSE(RowOf(Certificate({{"source", source}, {"scene", other}}), "names").isGood);
    other = source;
    // Relative to the diagonal, which is 5.
    (*other.box)[0] = 4e-6;
    EXPECT_TRUE(RowOf(Certificate({{"source", source}, {"scene", other}}), "box").isGood);
    (*other.box)[0] = 6e-6;
    EXPECT_FALSE(RowOf(Certificate({{"source", source}, {"scene", other}}), "box").isGood);
}

TEST(Certificate, AStageWithoutAPlaceForSomethingDoesNotCount)
{
    ModelFacts source;
    source.solids = 5;
    Certificate const certificate({{"source", source}, {"GLB", ModelFacts()}});
    EXPECT_TRUE(certificate.IsGood());
    EXPECT_EQ(RowOf(certificate, "solids").values, (std::vector<std::string>{"5", ""}));
}

TEST(ModelFacts, ComeBackFromTheirText)
{
    ModelFacts facts;
    facts.parts = 3;
    facts.names = {"ä", "b"};
    facts.mesh.emplace().areaMoment = {1.0, 2.0, 0.1};
    facts.AddPoint(1.0, 2.0, 3.0);
    facts.AddPoint(-1.0, 5.0, 3.0);
    ModelFacts const back = ModelFacts::Of(facts.Text());
    EXPECT_EQ(back.parts, facts.parts);
    EXPECT_EQ(back.names, facts.names);
    EXPECT_EQ(back.mesh->areaMoment, facts.mesh->areaMoment);
    EXPECT_EQ(back.box, (std::array<double, 6>{-1.0, 2.0, 3.0, 1.0, 5.0, 3.0}));
    EXPECT_FALSE(back.solids.has_value());
}

}  // namespace KVR::Test
