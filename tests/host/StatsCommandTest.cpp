#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

std::string const kAs1 = KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml";

TEST(StatsCommand, CountsAndBytesAreThoseOfTheFiles)
{
    ToolRun const run = RunTool({"stats", "--json", kAs1});
    ASSERT_EQ(run.status, 0) << run.error;
    json const stats = json::parse(run.out);
    EXPECT_EQ(stats["Occurrences"], 28);
    EXPECT_EQ(stats["Components"].size(), 5U);
    json const all = stats["All"];
    EXPECT_EQ(all["Meshes"], 5);
    // All of the two stores but their heads and tables.
    double const stores =
        static_cast<double>(std::filesystem::file_size(KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.mesh") +
                            std::filesystem::file_size(KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.seg"));
    EXPECT_LE(all["Bytes"].get<double>(), stores);
    EXPECT_GE(all["Bytes"].get<double>(), 0.98 * stores);
    double bytes = 0.0;
    double seconds = 0.0;
    for (json const& component : stats["Components"])
    {
        bytes += component["Bytes"].get<double>();
        seconds += component["Seconds"].get<double>();
        EXPECT_GT(component["MemoryBytes"].get<double>(), 0.0);
    }
    EXPECT_NEAR(bytes, all["Bytes"].get<double>(), 1e-6);
    EXPECT_GT(seconds, 0.0);
    EXPECT_LT(seconds, stats["Seconds"].get<double>());
    EXPECT_TRUE(stats["Duplicates"].empty());
}

TEST(StatsCommand, TimesAreMeasuredWhereProcessorTimeIsLimited)
{
    ToolRun const run =
        RunProgram({"/bin/sh", "-c", std::string("ulimit -t 1000; ") + KVR_TOOL + " stats --json " + kAs1});
    json const stats = json::parse(run.out);
    for (json const& component : stats["Components"])
        EXPECT_GT(component["Seconds"].get<double>(), 0.0);
}

TEST(StatsCommand, ANewPrefixChangesNothing)
{
    json const plain = json::parse(RunTool({"stats", "--json", kAs1}).out);
    json const prefixed = json::parse(RunTool({"stats", "--json", "--prefix", "x", kAs1}).out);
    EXPECT_EQ(plain["All"]["Bytes"], prefixed["All"]["Bytes"]);
    EXPECT_NE(plain["Components"][0]["Id"], prefixed["Components"][0]["Id"]);
}

TEST(StatsCommand, TheTableListsTheLargestAndCountsTheOthers)
{
    ToolRun const run = RunTool({"stats", "--most", "2", kAs1});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("Component\n"));
    EXPECT_THAT(run.out, HasSubstr("3 more components\n"));
    EXPECT_THAT(run.out, HasSubstr("5 components with geometry, 0 bodies, 5 meshes, "));
}

TEST(StatsCommand, OccurrencesAreListedByTheirPathsTheLargestFirst)
{
    ToolRun const run = RunTool({"stats", "--most", "4", kAs1});
    EXPECT_THAT(run.out, HasSubstr("Occurrence\n"));
    EXPECT_THAT(run.out, HasSubstr("  as1-oc-214/as1/plate_1\n"));
    EXPECT_THAT(run.out, HasSubstr("25 more occurrences\n"));
    json const stats = json::parse(RunTool({"stats", "--json", "--most", "1000", kAs1}).out);
    EXPECT_EQ(stats["OccurrencesWithGeometry"], 29);
    json const list = stats["LargestOccurrences"];
    ASSERT_EQ(list.size(), 29U);
    EXPECT_EQ(list[0]["Path"], "as1-oc-214");
    EXPECT_EQ(list[0]["Bytes"], stats["All"]["Bytes"]);
    EXPECT_EQ(list[0]["Triangles"], stats["Occurring"]["Triangles"]);
    EXPECT_EQ(list[3]["Path"], "as1-oc-214/as1/l-bracket-assembly_1");
    EXPECT_EQ(list[3]["Occurrences"], 2);
    EXPECT_EQ(json::parse(RunTool({"stats", "--json", "--most", "3", kAs1}).out)["LargestOccurrences"].size(), 3U);
}

TEST(StatsCommand, ThePageHasTreemapsAndNothingOfASceneIsMarkup)
{
    TempFolder folder;
    std::string const scene = folder.NarrowPathOf("<b>&.xml");
    std::filesystem::copy_file(kAs1, scene);
    for (char const* const end : {".mesh", ".seg"})
        std::filesystem::copy_file(KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214" + std::string(end),
                                   folder.NarrowPathOf("as1-oc-214" + std::string(end)));
    ToolRun const run = RunTool({"stats", "--html", scene});
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.out, testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(run.out, HasSubstr("&lt;b&gt;&amp;.xml"));
    EXPECT_THAT(run.out, Not(HasSubstr("<b>")));
    EXPECT_THAT(run.out, HasSubstr("<title>plate: "));
    EXPECT_THAT(run.out, HasSubstr("<title>l-bracket-assembly_1: "));
    EXPECT_THAT(run.out, HasSubstr("<td><bdi>as1-oc-214/as1/plate_1</bdi></td>"));
    EXPECT_THAT(run.out, HasSubstr("default-src 'none'"));
    EXPECT_THAT(run.out, Not(HasSubstr("<script")));
    EXPECT_EQ(RunTool({"stats", "--html", "--json", kAs1}).status, 2);
}

}  // namespace

}  // namespace KVR::Test
