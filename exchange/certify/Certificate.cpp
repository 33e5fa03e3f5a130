#include "exchange/certify/Certificate.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

#include "exchange/certify/CertificateNumbers.h"

namespace KVR::Certification
{

using namespace CertificateNumbers;

Certificate::Certificate(std::vector<Stage> stages) : m_stages(std::move(stages))
{
    for (Stage const& stage : m_stages)
        m_folded.emplace_back(stage.facts, m_stages.front().facts);
    for (std::size_t stage = 0; stage < m_stages.size(); ++stage)
        if (auto const table = m_stages[stage].facts.tables.find(kTable_Properties);
            table != m_stages[stage].facts.tables.end())
            table->second = m_folded[stage].Properties(m_folded.front());
    for (Stage const& stage : m_stages)
    {
        Bulk all;
        for (ModelFacts::Occurrence const& occurrence : stage.facts.occurrences)
            for (Bulk const* const bulk : {&occurrence.bodies, &occurrence.mesh})
                all.Add(*bulk);
        if (all.HasBox() && m_diagonal == 0.0)
            m_diagonal = std::hypot(all.high[0] - all.low[0], all.high[1] - all.low[1], all.high[2] - all.low[2]);
    }
    FindUnseen();
    AddStructure();
    AddOrganisation();
    AddNotes();
    AddColors();
    AddShapes();
    AddFaces();
    AddMeshes();
    AddAbsences();
}

bool Certificate::IsGood() const noexcept
{
    return std::all_of(m_rows.begin(), m_rows.end(), [](Row const& row) { return row.isGood; });
}

void Certificate::FindUnseen()
{
    FoldedFacts const& first = m_folded.front();
    Table const hidden = first.ByPath(m_stages.front().facts, kTable_Hidden);
    // Triangles are those of what is shown.
    auto const isShown = [this](std::string const& path)
    {
        for (std::size_t stage = 0; stage < m_stages.size(); ++stage)
            if (auto const node = m_folded[stage].nodes.find(path);
                m_stages[stage].facts.hasMesh && HasPlaceForHidden(stage) && node != m_folded[stage].nodes.end())
                return node->second.triangles > 0;
        return false;
    };
    for (auto const& [path, node] : first.nodes)
        if (node.isHidden || (hidden.count(path) != 0 && !isShown(path)))
            m_unseen.insert(path);
    // What is above nothing else: paths that begin with another stand behind it, though others may stand between.
    for (auto node = first.nodes.rbegin(); node != first.nodes.rend(); ++node)
    {
        if (node->second.isPart || m_unseen.count(node->first) != 0)
            continue;
        bool hasBelow = false;
        bool isUnseen = true;
        std::string const begin = node->first + '/';
        for (auto below = first.nodes.lower_bound(begin);
             isUnseen && below != first.nodes.end() && below->first.starts_with(begin); ++below)
        {
            hasBelow = true;
            isUnseen = !below->second.isPart || m_unseen.count(below->first) != 0;
        }
        if (hasBelow && isUnseen)
            m_unseen.insert(node->first);
    }
}

bool Certificate::HasPlaceForHidden(std::size_t stage) const
{
    return Has(stage, kTable_Hidden);
}

void Certificate::AddTable(char const* name, Ask const& ask, Compare const& compare, double tolerance, bool mayHaveMore)
{
    Row row;
    row.name = name;
    std::optional<Table> first;
    bool isAnything = false;
    auto const differ = [&](std::size_t stage, std::string const& what)
    {
        row.isGood = false;
        if (row.differences.size() < kMostDifferences)
            row.differences.push_back(m_stages[stage].name + ": " + what);
    };
    for (std::size_t stage = 0; stage < m_stages.size(); ++stage)
    {
        std::optional<Table> table = ask(stage);
        double count = 0.0;
        if (table && first)
            table = WithColorsOf(*first, *table);
        for (auto const& known : table ? *table : Table())
            count += known.second.numbers.empty() ? known.second.count : 1.0;
        isAnything = isAnything || count > 0.0;
        row.values.push_back(table ? fmt::format("{:.9g}", count) : std::string());
        if (!table)
            continue;
        if (!first)
        {
            first = std::move(table);
            continue;
        }
        for (auto const& [key, entry] : *first)
        {
            auto const found = table->find(key);
            double const apart = found == table->end() ? 1.0 : compare(entry, found->second);
            // What is there no time may be there.
            if (found == table->end() && entry.count == 0.0)
                continue;
            row.difference = std::max(row.difference, apart);
            if (found == table->end())
                differ(stage, fmt::format("'{}' is missing", Named(key)));
            else if (apart > tolerance)
                differ(stage, fmt::format("'{}': {} instead of {}", Named(key), Shown(found->second), Shown(entry)));
        }
        for (auto const& [key, entry] : *table)
            if (!mayHaveMore && first->count(key) == 0)
            {
                row.difference = 1.0;
                differ(stage, fmt::format("'{}' is new", Named(key)));
            }
    }
    if (isAnything)
        m_rows.push_back(std::move(row));
}

bool Certificate::Has(std::size_t stage, char const* table) const
{
    return m_stages[stage].facts.tables.count(table) != 0;
}

void Certificate::AddTableOf(char const* name, Compare const& compare, double tolerance, bool mayHaveMore)
{
    AddTable(
        name,
        [this, name](std::size_t stage)
        { return Has(stage, name) ? std::optional(m_stages[stage].facts.tables.at(name)) : std::nullopt; },
        compare, tolerance, mayHaveMore);
}

Table Certificate::ByPathAndName(std::size_t stage, char const* name) const
{
    Table table = m_folded[stage].ByPath(m_stages[stage].facts, name);
    bool isByPath = true;
    for (FoldedFacts const& folded : m_folded)
        isByPath = isByPath && folded.hasStructure;
    if (isByPath)
        return table;
    Table byName;
    for (auto const& [key, entry] : table)
        byName[ModelFacts::Joined({}, ModelFacts::Parted(key).second)].Add(entry);
    return byName;
}

void Certificate::AddTotal(char const* name,
                           std::function<std::optional<std::vector<double>>(std::size_t stage)> const& ask,
                           bool areLengths, std::optional<double> tolerance)
{
    Row row;
    row.name = name;
    std::optional<std::vector<double>> first;
    bool isAnything = false;
    for (std::size_t stage = 0; stage < m_stages.size(); ++stage)
    {
        auto const values = ask(stage);
        row.values.push_back(!values               ? std::string()
                             : values->size() == 1 ? fmt::format("{:.9g}", values->front())
                                                   : fmt::format("{:.6g}", fmt::join(*values, " ")));
        if (!values)
            continue;
        isAnything = isAnything || std::any_of(values->begin(), values->end(), [](double x) { return x != 0.0; });
        double apart = 0.0;
        for (std::size_t i = 0; first && i < values->size(); ++i)
            apart = std::max(apart, !areLengths        ? Relative((*first)[i], (*values)[i])
                                    : m_diagonal > 0.0 ? std::abs((*first)[i] - (*values)[i]) / m_diagonal
                                                       : 0.0);
        row.difference = std::max(row.difference, apart);
        if (apart > tolerance.value_or(kTolerance))
            row.differences.push_back(fmt::format("{}: {:.9g} instead of {:.9g}", m_stages[stage].name,
                                                  fmt::join(*values, " "), fmt::join(*first, " ")));
        if (!first)
            first = values;
    }
    row.isGood = row.differences.empty();
    if (isAnything)
        m_rows.push_back(std::move(row));
}

Table Certificate::ByPath(std::size_t stage, std::function<std::vector<double>(Node const&)> const& ask) const
{
    bool const allHavePlace = [this]
    {
        for (std::size_t i = 0; i < m_stages.size(); ++i)
            if (!HasPlaceForHidden(i) && HasPlaceForHidden(0))
                return false;
        return true;
    }();
    Table table;
    for (auto const& [path, node] : m_folded[stage].nodes)
    {
        if (allHavePlace || m_unseen.count(path) == 0)
            table[path] = {1.0, ask(node)};
    }
    return table;
}

}  // namespace KVR::Certification
