#include "tests/inspect/rules/SeededScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace fs = std::filesystem;

namespace
{

std::string Bytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

}  // namespace

SeededScene::SeededScene(std::string const& name) : m_name(fs::path(name).stem().string())
{
    fs::path const examples(KVR_EXAMPLES_DIR);
    if (m_name == name)
        fs::copy(examples / name, m_folder.Path());
    else
        EXPECT_EQ(RunTool({"import", (examples / "models" / name).string(), PathOf(Name())}).status, 0);
    m_document = Content(Name());
    m_known = CheckScene(PathOf(Name())).findings;
}

std::string SeededScene::Content(std::string const& file) const
{
    return Bytes(PathOf(file));
}

std::vector<Finding> SeededScene::Findings() const
{
    std::vector<Finding> findings = CheckScene(PathOf(Name())).findings;
    std::erase_if(findings,
                  [&](Finding const& finding)
                  {
                      return std::any_of(m_known.begin(), m_known.end(),
                                         [&](Finding const& known) {
                                             return known.rule == finding.rule && known.path == finding.path &&
                                                    known.found == finding.found;
                                         });
                  });
    return findings;
}

std::vector<Finding> SeededScene::FindingsWith(std::string const& file, std::string_view content) const
{
    std::string const before = Content(file);
    m_folder.Write(file, content);
    std::vector<Finding> findings = Findings();
    m_folder.Write(file, before);
    return findings;
}

std::vector<Finding> SeededScene::FindingsWithout(std::string const& file) const
{
    fs::rename(PathOf(file), PathOf("aside"));
    std::vector<Finding> findings = Findings();
    fs::rename(PathOf("aside"), PathOf(file));
    return findings;
}

std::vector<std::size_t> SeededScene::PlacesOf(std::string_view text) const
{
    std::vector<std::size_t> places;
    for (std::size_t at = m_document.find(text); at != std::string::npos; at = m_document.find(text, at + 1))
        places.push_back(at);
    return places;
}

std::string SeededScene::Changed(std::size_t place, std::size_t length, std::string_view text) const
{
    std::string changed = m_document;
    return changed.replace(place, length, text);
}

std::uint64_t LineOf(std::string_view text, std::size_t place)
{
    return static_cast<std::uint64_t>(
               std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n')) +
           1;
}

void ExpectFound(std::vector<Finding> const& findings, std::string_view rule, std::string const& file,
                 std::uint64_t line, std::vector<std::string_view> const& followers, std::string const& what)
{
    bool const isFound = std::any_of(
        findings.begin(), findings.end(),
        [&](Finding const& finding)
        { return finding.rule->id == rule && finding.file == file && (line == 0 || finding.line == line); });
    EXPECT_TRUE(isFound) << rule << " is not found in line " << line << " of " << file << ": " << what;
    for (Finding const& finding : findings)
    {
        std::string_view const id = finding.rule->id;
        EXPECT_TRUE(id == rule || std::find(followers.begin(), followers.end(), id) != followers.end())
            << id << " (" << finding.found << "; " << finding.readAs << ") with " << what;
        EXPECT_TRUE(isFound || id != rule) << finding.file << ':' << finding.line;
    }
}

}  // namespace KVR::Test
