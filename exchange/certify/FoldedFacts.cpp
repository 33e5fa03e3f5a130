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
        if (path == occurrence.path.substr(IsBelowRoot(occurrence.path) ? m_root.size() : 0))
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
    return !m_root.empty() && path.compare(0, m_root.size(), m_root) == 0;
}

void FoldedFacts::FindRoot(ModelFacts const& facts, ModelFacts const& first)
{
    if (facts.occurrences.empty() || first.occurrences.size() < 2)
        return;
    std::string const root = facts.occurrences.front().path;
    std::string const& wanted = first.occurrences.front().path;
    bool const isSingle = std::all_of(facts.occurrences.begin() + 1, facts.occurrences.end(),
                                      [&](ModelFacts::Occurrence const& occurrence)
                                      { return occurrence.path.compare(0, root.size() + 1, root + '/') == 0; });
    bool const isBelow =
        std::any_of(facts.occurrences.begin() + 1, facts.occurrences.end(),
                    [&](ModelFacts::Occurrence const& occurrence) { return occurrence.path == root + '/' + wanted; });
    if (root != wanted && isSingle && isBelow)
        m_root = root + '/';
}

std::string FoldedFacts::FoldedPath(std::string const& full) const
{
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
