#include "host/check/FixDiff.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

namespace KVR
{

namespace
{

// Lines around a change.
constexpr std::size_t kContext = 3;

using Lines = std::vector<std::string_view>;

// Each with its line end, which the last one may lack.
Lines LinesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty())
    {
        std::size_t const end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

// Lines that become other ones: from the first to the one behind the last.
struct Change
{
    std::size_t first = 0;
    std::size_t last = 0;
    std::string text;
};

class Diff
{
public:
    Diff(std::string_view content, std::vector<Edit> const& edits) : m_content(content), m_lines(LinesOf(content))
    {
        for (std::string_view const line : m_lines)
            m_starts.push_back(static_cast<std::size_t>(line.data() - content.data()));
        m_starts.push_back(content.size());
        for (std::size_t i = 0; i < edits.size();)
            i = AddChange(edits, i);
    }

    std::string Text()
    {
        std::string text;
        for (std::size_t first = 0; first < m_changes.size();)
        {
            std::size_t last = first + 1;
            while (last < m_changes.size() && m_changes[last].first <= m_changes[last - 1].last + 2 * kContext)
                ++last;
            text += Hunk({m_changes.data() + first, last - first});
            first = last;
        }
        return text;
    }

private:
    std::size_t LineOf(std::uint64_t byte) const
    {
        auto const behind = std::upper_bound(m_starts.begin(), m_starts.end(), static_cast<std::size_t>(byte));
        return std::min(static_cast<std::size_t>(behind - m_starts.begin()) - 1, m_lines.size() - 1);
    }

    // A change of all edits from here on that meet in a line; the first edit behind them.
    std::size_t AddChange(std::vector<Edit> const& edits, std::size_t i)
    {
        Change change{LineOf(edits[i].begin), LineOf(edits[i].end) + 1, {}};
        std::size_t at = m_starts[change.first];
        for (; i < edits.size() && edits[i].begin < m_starts[change.last]; ++i)
        {
            change.last = std::max(change.last, LineOf(edits[i].end) + 1);
            change.text += m_content.substr(at, edits[i].begin - at);
            change.text += edits[i].text;
            at = edits[i].end;
        }
        change.text += m_content.substr(at, m_starts[change.last] - at);
        m_changes.push_back(std::move(change));
        return i;
    }

    static void Put(std::string& text, char mark, std::string_view line)
    {
        text += mark;
        text += line;
        if (!line.ends_with('\n'))
            text += "\n\\ No newline at end of file\n";
    }

    std::string Hunk(std::span<Change const> changes)
    {
        std::size_t const first = changes.front().first - std::min(changes.front().first, kContext);
        std::size_t const last = std::min(changes.back().last + kContext, m_lines.size());
        std::string body;
        std::size_t added = 0;
        std::size_t removed = 0;
        std::size_t at = first;
        for (Change const& change : changes)
        {
            for (; at < change.first; ++at)
                Put(body, ' ', m_lines[at]);
            for (; at < change.last; ++at, ++removed)
                Put(body, '-', m_lines[at]);
            for (std::string_view const line : LinesOf(change.text))
            {
                Put(body, '+', line);
                ++added;
            }
        }
        for (; at < last; ++at)
            Put(body, ' ', m_lines[at]);
        std::size_t const before = last - first;
        std::size_t const after = before - removed + added;
        // Of no lines the one in front is named.
        std::string const head = fmt::format("@@ -{},{} +{},{} @@\n", first + (before > 0 ? 1 : 0), before,
                                             first + m_shift + (after > 0 ? 1 : 0), after);
        m_shift += added - removed;
        return head + body;
    }

    std::string_view m_content;
    Lines m_lines;
    std::vector<std::size_t> m_starts;
    std::vector<Change> m_changes;
    // How many lines more the new file has so far, modulo the size of the number.
    std::size_t m_shift = 0;
};

}  // namespace

std::string UnifiedDiff(std::string const& path, std::string const& content, std::vector<Edit> edits)
{
    std::stable_sort(edits.begin(), edits.end(), [](Edit const& a, Edit const& b) { return a.begin < b.begin; });
    std::vector<Edit> good;
    for (Edit& edit : edits)
        if (edit.begin <= edit.end && edit.end <= content.size() && (good.empty() || good.back().end <= edit.begin) &&
            (good.empty() || good.back().begin < edit.begin))
            good.push_back(std::move(edit));
    if (good.empty() || content.empty())
        return {};
    // The tab ends a name that has blanks.
    return fmt::format("--- {}\t\n+++ {}\t\n", path, path) + Diff(content, good).Text();
}

std::string DiffOfFixes(std::span<Finding const> findings)
{
    std::map<std::string, std::vector<Edit>> edits;
    for (Finding const& finding : findings)
        for (Edit const& edit : finding.fix)
            edits[finding.file].push_back(edit);
    std::string diffs;
    for (auto& [path, list] : edits)
    {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream content;
        if (file && content << file.rdbuf())
            diffs += UnifiedDiff(path, content.str(), std::move(list));
    }
    return diffs;
}

}  // namespace KVR
