// The dump of examples/complete, which uses the name of every element and attribute of the format.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using Json = nlohmann::ordered_json;

std::string const kFolder = std::string(KVR_EXAMPLES_DIR) + "/complete";

std::string TextOf(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// The embedded image is named relative to the folder in which the program runs.
class InFolder
{
public:
    explicit InFolder(std::string const& folder) : m_former(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~InFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(m_former, ignored);
    }
    InFolder(InFolder const&) = delete;
    InFolder& operator=(InFolder const&) = delete;

private:
    std::filesystem::path m_former;
};

std::string DumpOf(std::string const& folder)
{
    InFolder const inFolder(folder);
    ToolRun const run = RunTool({"dump", "--extension", "path", "--extension", "texture", "--extension", "style",
                                 "--extension", "layer", "--extension", "body", "complete.xml"});
    EXPECT_EQ(run.status, 0) << run.error;
    return run.out;
}

// Measures of the kernel, in "Body" and "KernelCurves", are equal to 1e-9; all else to the digit.
void ExpectEqual(Json const& found, Json const& expected, std::string const& at, bool isMeasured = false)
{
    if (isMeasured && found.is_number() && expected.is_number())
    {
        double const value = expected.get<double>();
        EXPECT_NEAR(found.get<double>(), value, 1e-9 * std::max(1.0, std::abs(value))) << at;
        return;
    }
    if (found.type() != expected.type() || !expected.is_structured() || found.size() != expected.size())
    {
        EXPECT_EQ(found, expected) << at;
        return;
    }
    auto expectedItem = expected.items().begin();
    for (auto const& [key, value] : found.items())
    {
        std::string const here = at + "/" + key;
        EXPECT_EQ(key, expectedItem.key()) << at;
        ExpectEqual(value, expectedItem.value(), here, isMeasured || key == "Body" || key == "KernelCurves");
        ++expectedItem;
    }
}

// The scene with the objects under its root the other way round.
std::string Reordered(std::string const& scene)
{
    std::size_t const file = scene.find("  <IFile ID=");
    std::size_t const assembly = scene.find("  <IAssembly ID=");
    std::size_t const part = scene.find("  <IPart ID=");
    std::size_t const end = scene.find("</Scene>");
    return scene.substr(0, file) + scene.substr(part, end - part) + scene.substr(assembly, part - assembly) +
           scene.substr(file, assembly - file) + scene.substr(end);
}

TEST(CompleteScene, ItsDumpIsTheOneThatIsKept)
{
    Json const expected = Json::parse(TextOf(kFolder + "/complete.dump.json"), nullptr, false);
    Json const found = Json::parse(DumpOf(kFolder), nullptr, false);
    ASSERT_FALSE(expected.is_discarded());
    ASSERT_FALSE(found.is_discarded());
    ExpectEqual(found, expected, "");
}

TEST(CompleteScene, ItsDumpIsTheSameWhenTheObjectsUnderTheRootStandInAnotherOrder)
{
    std::string const scene = TextOf(kFolder + "/complete.xml");
    std::string const reordered = Reordered(scene);
    ASSERT_EQ(reordered.size(), scene.size());
    ASSERT_NE(reordered, scene);
    TempFolder folder;
    std::filesystem::path const copy = std::filesystem::path(folder.NarrowPathOf("complete.xml")).parent_path();
    for (auto const& entry : std::filesystem::directory_iterator(kFolder))
        std::filesystem::copy(entry.path(), copy / entry.path().filename());
    folder.Write("complete.xml", reordered);
    EXPECT_EQ(DumpOf(copy.string()), DumpOf(kFolder));
}

}  // namespace

}  // namespace KVR::Test
