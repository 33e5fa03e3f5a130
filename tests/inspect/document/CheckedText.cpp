#include "tests/inspect/document/CheckedText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KVR::Test
{

CheckedText::CheckedText(std::string_view xml, CheckOptions const* options) : m_path(m_folder.Path() + "/scene.xml")
{
    WriteBytes(m_path, xml);
    m_result = CheckScene(m_path, options ? *options : CheckOptions());
}

std::vector<std::string> CheckedText::Findings() const
{
    std::vector<std::string> texts;
    for (Finding const& finding : m_result.findings)
    {
        if (finding.rule->id < "K-0300")
            texts.push_back(BriefText(finding));
    }
    return texts;
}

Finding CheckedText::Only(std::string_view rule) const
{
    std::vector<Finding> found;
    std::copy_if(m_result.findings.begin(), m_result.findings.end(), std::back_inserter(found),
                 [&](Finding const& finding) { return finding.rule->id == rule; });
    EXPECT_EQ(found.size(), 1U) << rule << " among " << ::testing::PrintToString(Findings());
    return found.empty() ? Finding() : found.front();
}

std::string BriefText(Finding const& finding)
{
    return std::string(finding.rule->id) + " at " + std::to_string(finding.line) + ": " + finding.found;
}

std::vector<std::string> DocumentRuleIds()
{
    std::vector<std::string> ids;
    for (Rule const& rule : AllRules())
    {
        if (rule.id < "K-0300")
            ids.emplace_back(rule.id);
    }
    return ids;
}

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(std::string const& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string Repaired(std::string text, Finding const& finding)
{
    if (finding.fix.empty())
        throw std::runtime_error("no repair");
    // From the last to the first, so that the places of those in front stay.
    for (auto edit = finding.fix.rbegin(); edit != finding.fix.rend(); ++edit)
        text.replace(edit->begin, edit->end - edit->begin, edit->text);
    return text;
}

std::string SceneOf(std::string_view inPart, std::string_view underRoot)
{
    return std::string(
               "<Scene>\n<IFile ID=\"f\" Label=\"\" IsRoot=\"1\"><ChildSet>"
               "<Child ID=\"p\" Type=\"IPart\"/></ChildSet></IFile>\n<IPart ID=\"p\" Label=\"\">\n") +
           std::string(inPart) + "\n</IPart>\n" + std::string(underRoot) + "\n</Scene>\n";
}

}  // namespace KVR::Test
