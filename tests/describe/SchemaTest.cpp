// The schema of the dump: that the file in docs is of today's tables, and that dumps are as it says.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "describe/Schema.h"
#include "tests/support/FullScene.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;

std::string const kSchemaPath = std::string(KVR_DOCS_DIR) + "/dump.schema.json";

std::string TextOf(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// Dumps in a folder, and what the validator says of them.
class DumpSchema : public testing::Test
{
protected:
    void Keep(std::string const& name, std::string const& dump)
    {
        m_folder.Write(name, dump);
        m_paths.push_back(m_folder.NarrowPathOf(name));
    }

    void Dump(std::string const& name, std::vector<std::string> arguments, int status = 0)
    {
        arguments.insert(arguments.begin(), "dump");
        ToolRun const run = RunTool(arguments);
        ASSERT_EQ(run.status, status) << run.error;
        Keep(name, run.out);
    }

    void DumpExample(std::string const& name, std::vector<std::string> options)
    {
        options.push_back(std::string(KVR_EXAMPLES_DIR) + "/" + name + "/" + name + ".xml");
        Dump(name + std::to_string(m_paths.size()) + ".json", options);
    }

    ToolRun Validate() const
    {
        std::vector<std::string> words = {KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, kSchemaPath};
        words.insert(words.end(), m_paths.begin(), m_paths.end());
        return RunProgram(words);
    }

    void ExpectValid() const
    {
        ToolRun const run = Validate();
        EXPECT_EQ(run.status, 0) << run.out << run.error;
    }

    TempFolder m_folder;

private:
    std::vector<std::string> m_paths;
};

}  // namespace

TEST(Schema, TheOneInDocsIsMadeOfTheTables)
{
    EXPECT_EQ(TextOf(kSchemaPath), KVR::DumpSchema())
        << "write it anew: build/release/bin/kvr_dump_schema > docs/dump.schema.json";
}

TEST_F(DumpSchema, HoldsForTheExamples)
{
    DumpExample("complete", {});
    DumpExample("complete", {"--summary", "--id", "nobody"});
    DumpExample("as1-oc-214", {});
    DumpExample("as1-oc-214", {"--summary", "--extension", "kvr.body"});
    DumpExample("lcr_follower_arm", {"--summary"});
    ExpectValid();
}

TEST_F(DumpSchema, HoldsForTheFullScene)
{
    WriteSideFiles(m_folder);
    m_folder.Write("scene.xml", FullScene());
    std::vector<std::string> arguments = {"--extension", "type", m_folder.NarrowPathOf("scene.xml")};
    for (std::string const& id : FullSceneIds())
    {
        if (!id.empty())
            arguments.insert(arguments.begin(), {"--id", id});
    }
    Dump("full.json", arguments);
    ExpectValid();
}

TEST_F(DumpSchema, HoldsForScenesThatFail)
{
    m_folder.Write("scene.xml", "<Scene");
    Dump("failed.json", {m_folder.NarrowPathOf("scene.xml")}, 1);
    m_folder.Write("empty.xml", "<Scene/>");
    Dump("empty.json", {m_folder.NarrowPathOf("empty.xml")});
    ExpectValid();
}

TEST_F(DumpSchema, FailsForWhatNoDumpHolds)
{
    std::string const path = std::string(KVR_EXAMPLES_DIR) + "/complete/complete.xml";
    json const dump = json::parse(RunTool({"dump", "--summary", path}).out);
    std::vector<std::pair<char const*, json>> changes = {
        {"/RootObjectId", 1},
        {"/Universe/DefaultCurveColor", json::array({1, 2, 3})},
        {"/Objects/file/Class", "IFil"},
        {"/Objects/file/IsRoot", nullptr},
        {"/Objects/file/Children", json::array({1})},
        {"/Objects/file/More", 1},
    };
    for (auto const& [pointer, value] : changes)
    {
        json changed = dump;
        changed[json::json_pointer(pointer)] = value;
        Keep("changed.json", changed.dump());
        ToolRun const run = Validate();
        EXPECT_EQ(run.status, 1) << pointer << run.error;
        EXPECT_THAT(run.out, HasSubstr("changed.json"));
    }
    json without = dump;
    without["Objects"].begin()->erase("Label");
    Keep("without.json", without.dump());
    EXPECT_THAT(Validate().out, HasSubstr("'Label' is a required property"));
}

}  // namespace KVR::Test
