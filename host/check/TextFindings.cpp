#include "host/check/TextFindings.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host/PaintedText.h"
#include "host/check/CheckedScene.h"
#include "host/check/SourceLines.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// A text of the scene is cut behind so many bytes.
constexpr std::size_t kLongestText = 200;

using Group = std::vector<Finding const*>;

std::string_view ColorOf(Severity severity)
{
    switch (severity)
    {
        case Severity::kError:
            return "1;31";
        case Severity::kWarning:
            return "1;33";
        case Severity::kNote:
            break;
    }
    return "1;36";
}

// The worst first, then by their ids.
std::vector<Group> GroupsOf(std::vector<Finding> const& findings)
{
    std::map<std::pair<int, std::string_view>, Group> groups;
    for (Finding const& finding : findings)
        groups[{-static_cast<int>(finding.rule->severity), finding.rule->id}].push_back(&finding);
    std::vector<Group> list;
    for (auto& [key, group] : groups)
        list.push_back(std::move(group));
    return list;
}

// As text that is safe to show, where quotation marks and backslashes end nothing.
std::string Shown(std::string_view text)
{
    std::string shown;
    while (!text.empty())
    {
        std::size_t const end = std::min(text.find_first_of("\"\\"), text.size());
        shown += Escaped(text.substr(0, end));
        shown += text.substr(end, 1);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return shown;
}

class Writer
{
public:
    Writer(CheckedScene const& scene, TextFindingsOptions const& options, Output& out)
        : m_scene(scene), m_options(options), m_out(out), m_text(out, options.inColor)
    {
    }

    void Write()
    {
        std::vector<Group> const groups = GroupsOf(m_scene.result.findings);
        ReadLines(groups);
        for (Group const& group : groups)
            WriteGroup(group);
        WriteTotals();
    }

private:
    std::span<Finding const* const> ShownOf(Group const& group) const
    {
        return {group.data(), std::min(group.size(), m_options.mostPlaces)};
    }

    void ReadLines(std::vector<Group> const& groups)
    {
        std::map<std::string, std::set<std::size_t>> wanted;
        for (Group const& group : groups)
            for (Finding const* const finding : ShownOf(group))
                if (finding->line > 0)
                    wanted[finding->file].insert(finding->line);
        for (auto const& [file, lines] : wanted)
            m_lines.emplace(file, SourceLines(file, lines));
    }

    void WriteGroup(Group const& group)
    {
        Rule const& rule = *group.front()->rule;
        m_text.Paint(ColorOf(rule.severity));
        m_out.Put(TextOf(rule.severity));
        m_text.Paint(PaintedText::kPlain);
        m_text.Paint(PaintedText::kBold);
        m_out.Put(fmt::format(" {} {}: {}", rule.id, rule.name, rule.sentence));
        m_text.Paint(PaintedText::kPlain);
        m_out.Put(group.size() == 1 ? "\n" : fmt::format(" ({} places)\n", group.size()));
        for (Finding const* const finding : ShownOf(group))
            WritePlace(*finding);
        if (group.size() > m_options.mostPlaces)
            m_out.Put(fmt::format("  and {} more; --all shows them\n", group.size() - m_options.mostPlaces));
    }

    void WritePlace(Finding const& finding)
    {
        m_out.Put("  ");
        PutEscaped(m_out, finding.file);
        if (finding.line > 0)
            m_out.Put(fmt::format(":{}:{}", finding.line, finding.column));
        else if (finding.end > 0)
            m_out.Put(fmt::format(", bytes {} to {}", finding.begin, finding.end));
        m_out.Put(": ");
        Put(finding.found);
        if (!finding.objectId.empty())
        {
            m_out.Put(finding.found.empty() ? "of " : ", of ");
            m_text.Paint(PaintedText::kId);
            Put(finding.objectId);
            m_text.Paint(PaintedText::kPlain);
        }
        m_out.Put('\n');
        WriteLine(finding);
        WriteMore("in", finding.path);
        WriteMore("reader", finding.readAs);
        for (std::string const& reason : finding.reasons)
            WriteMore("since", reason);
        WriteMore("meant", finding.meant);
    }

    void WriteLine(Finding const& finding)
    {
        auto const lines = m_lines.find(finding.file);
        if (finding.line == 0 || lines == m_lines.end())
            return;
        SourceLines::Excerpt const excerpt = lines->second.Around(finding.line, finding.column);
        if (excerpt.text.empty())
            return;
        std::string const number = fmt::format("{:7} | ", finding.line);
        m_out.Put(number);
        m_out.Put(excerpt.text);
        m_out.Put('\n');
        m_out.PutSpaces(number.size() - 2);
        m_out.Put("| ");
        m_out.PutSpaces(excerpt.caret);
        m_text.Paint(ColorOf(finding.rule->severity));
        m_out.Put('^');
        m_text.Paint(PaintedText::kPlain);
        m_out.Put('\n');
    }

    void WriteMore(std::string_view what, std::string const& text)
    {
        if (text.empty())
            return;
        m_out.Put("    ");
        m_out.Put(what);
        m_out.Put(": ");
        Put(text);
        m_out.Put('\n');
    }

    void Put(std::string const& text)
    {
        m_out.Put(Shown(std::string_view(text).substr(0, kLongestText)));
        if (text.size() > kLongestText)
            m_out.Put("...");
    }

    void WriteTotals()
    {
        std::array<std::size_t, 3> const counts = m_scene.Counts();
        std::string totals;
        for (Severity const severity : {Severity::kError, Severity::kWarning, Severity::kNote})
        {
            std::size_t const count = counts.at(static_cast<std::size_t>(severity));
            if (count > 0)
                totals += fmt::format("{}{} {}{}", totals.empty() ? "" : ", ", count, TextOf(severity),
                                      count == 1 ? "" : "s");
        }
        PutEscaped(m_out, m_scene.path);
        m_out.Put(": ");
        m_out.Put(totals.empty() ? "nothing found" : totals);
        if (m_scene.known > 0)
            m_out.Put(fmt::format("; {} known", m_scene.known));
        m_out.Put('\n');
    }

    CheckedScene const& m_scene;
    TextFindingsOptions const& m_options;
    Output& m_out;
    PaintedText m_text;
    std::map<std::string, SourceLines> m_lines;
};

}  // namespace

void WriteFindings(CheckedScene const& scene, TextFindingsOptions const& options, Output& out)
{
    Writer(scene, options, out).Write();
}

}  // namespace KVR
