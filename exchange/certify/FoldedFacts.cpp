#include "exchange/certify/FoldedFacts.h"

#include <algorithm>

namespace KVR::Certification
{

FoldedFacts::FoldedFacts(ModelFacts const& facts, ModelFacts const& first)
{
    for (ModelFacts::Occurrence const& occurrence : first.occurrences)
        m_known.insert(occurrence.path);
    FindRoot(facts, first);
    for (ModelFacts::Occurrence const& occurrence : facts.occurrences)
    {
        hasStructure = hasStructure || !occurrence.path.empty();
        std::string const path = FoldedPath(occurrence.path);
        Node& node = nodes[path];
        if (!IsAboveRoot(occurrence.path) &&
            path == occurrence.path.substr(IsBelowRoot(occurrence.path) ? m_root.size() : 0))
        {
            ++node.count;
            node.isHidden = occurrence.isHidden;
            node.names.insert(occurrence.name);
            node.names.insert(occurrence.componentName);
            node.componentNames.insert(occurrence.componentName);
            node.components.insert(occurrence.component);
            if (!occurrence.number.empty())
                node.numbers.insert(occurrence.componentName + " is " + occurrence.number);
        }
        node.properties.insert(occurrence.properties.begin(), occurrence.properties.end());
        node.units.insert(occurrence.units.begin(), occurrence.units.end());
        node.solids += occurrence.solids;
        node.faces += occurrence.faces;
        node.triangles += occurrence.triangles;
        node.bodies.Add(occurrence.bodies);
        node.mesh.Add(occurrence.mesh);
    }
    for (ModelFacts::Occurrence const& occurrence : first.occurrences)
        if (auto const node = nodes.find(occurrence.path); node != nodes.end())
            node->second.isPart = occurrence.isPart;
}

ModelFacts::Table FoldedFacts::Properties(FoldedFacts const& first) const
{
    ModelFacts::Table table;
    for (auto const& [path, node] : nodes)
        for (std::string const& value : node.properties)
        {
            auto const known = first.nodes.find(path);
            bool const hasName = known != first.nodes.end() && !known->second.componentNames.empty();
            table[(hasName ? *known->second.componentNames.begin() : path) + ": " + value].count = 1.0;
        }
    return table;
}

ModelFacts::Table FoldedFacts::ByPath(ModelFacts const& facts, char const* table) const
{
    ModelFacts::Table folded;
    auto const found = facts.tables.find(table);
    if (found == facts.tables.end())
        return folded;
    for (auto const& [key, entry] : found->second)
    {
        std::size_t const joint = std::min(key.find(ModelFacts::kJoint), key.size());
        folded[FoldedPath(key.substr(0, joint)) + key.substr(joint)].Add(entry);
    }
    return folded;
}

bool FoldedFacts::IsBelowRoot(std::string const& path) const
{
    return !m_root.empty() && path.starts_with(m_root);
}

bool FoldedFacts::IsAboveRoot(std::string const& path) const
{
    return !m_root.empty() && m_root.starts_with(path + '/');
}

void FoldedFacts::FindRoot(ModelFacts const& facts, ModelFacts const& first)
{
    constexpr std::size_t kMostLevels = 8;
    auto const& all = facts.occurrences;
    if (first.occurrences.empty())
        return;
    m_top = first.occurrences.front().path;
    std::ptrdiff_t most = 0;
    std::string root;
    for (std::size_t level = 0; level <= std::min(kMostLevels, all.size()); ++level)
    {
        auto const begin = all.begin() + static_cast<std::ptrdiff_t>(level);
        auto const matches = std::count_if(begin, all.end(),
                                           [&](ModelFacts::Occurrence const& occurrence)
                                           { return m_known.count(occurrence.path.substr(root.size())) != 0; });
        if (matches > most)
        {
            most = matches;
            m_root = root;
        }
        if (begin == all.end())
            break;
        root = begin->path + '/';
        if (!std::all_of(begin + 1, all.end(),
                         [&](ModelFacts::Occurrence const& occurrence) { return occurrence.path.starts_with(root); }))
            break;
    }
}

std::string FoldedFacts::FoldedPath(std::string const& full) const
{
    if (IsAboveRoot(full))
        return m_top;
    std::string path = IsBelowRoot(full) ? full.substr(m_root.size()) : full;
    for (std::string known = path;;)
    {
        if (m_known.count(known) != 0)
            return known;
        if (known.empty())
            return path;
        std::size_t const cut = known.find_last_of('/');
        known.resize(cut == std::string::npos ? 0 : cut);
    }
}

}  // namespace KVR::Certification
