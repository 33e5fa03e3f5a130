#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "exchange/export/SceneModelReader.h"

// What is taken out of a scene model: cycles, what is too deep, and what the user does not want.
namespace KVR
{

namespace
{

constexpr std::size_t kMostLevels = 1000;

}  // namespace

// Removes placements that would close a cycle or reach too deep, by one walk that follows each component once.
void SceneModelReader::CutCycles()
{
    enum class Mark : unsigned char
    {
        kNew,
        kOpen,
        kDone
    };
    struct Step
    {
        std::size_t component;
        std::size_t next;
    };
    std::vector<Mark> marks(m_model.components.size(), Mark::kNew);
    // How many levels there are below and with a component.
    std::vector<std::size_t> heights(m_model.components.size(), 1);
    if (m_model.root == SceneModel::kNone)
        return;
    std::vector<Step> path{{m_model.root, 0}};
    marks[m_model.root] = Mark::kOpen;
    while (!path.empty())
    {
        Step& step = path.back();
        auto& placements = m_model.components[step.component].placements;
        if (step.next == placements.size())
        {
            std::erase_if(placements,
                          [](ModelPlacement const& placement) { return placement.target == SceneModel::kNone; });
            marks[step.component] = Mark::kDone;
            std::size_t const height = heights[step.component];
            path.pop_back();
            if (!path.empty())
                heights[path.back().component] = std::max(heights[path.back().component], height + 1);
            continue;
        }
        std::size_t const target = placements[step.next].target;
        bool const isTooDeep = path.size() + heights[target] > kMostLevels;
        if (marks[target] == Mark::kOpen || isTooDeep)
        {
            placements[step.next++].target = SceneModel::kNone;
            ++m_model.missingTargets;
            continue;
        }
        ++step.next;
        if (marks[target] == Mark::kDone)
            heights[step.component] = std::max(heights[step.component], heights[target] + 1);
        else
        {
            marks[target] = Mark::kOpen;
            path.push_back({target, 0});
        }
    }
}

// Names what is wanted as objects, by their ids: those that the names are the id or label of, and the items of layers.
void SceneModelReader::ApplyFilter()
{
    auto const named = [&](std::vector<std::string> const& names)
    {
        std::unordered_set<std::string> all(names.begin(), names.end());
        for (ModelLayer const& layer : m_model.layers)
            if (all.contains(layer.id) || all.contains(layer.label) || all.contains(std::to_string(layer.number)))
                all.insert(layer.items.begin(), layer.items.end());
        return all;
    };
    auto const isIn = [](std::unordered_set<std::string> const& names, auto const& object)
    { return names.contains(object.id) || (!object.label.empty() && names.contains(object.label)); };
    auto const hidden = named(m_filter.hide);
    auto const only = named(m_filter.only);
    if (!hidden.empty())
        for (ModelComponent& component : m_model.components)
        {
            std::erase_if(component.placements, [&](ModelPlacement const& placement)
                          { return isIn(hidden, placement) || isIn(hidden, m_model.components[placement.target]); });
            std::erase_if(component.geometry, [&](ModelGeometry const& geometry)
                          { return isIn(hidden, geometry) || hidden.contains(geometry.bodyId); });
        }
    if (only.empty() || m_model.root == SceneModel::kNone || isIn(only, m_model.components[m_model.root]))
        return;
    // Components under something wanted stay as they are. Others keep what leads to something wanted: since a component
    // may stand under both, the second kind is a copy, made where one is needed.
    struct Step
    {
        std::size_t component;
        std::size_t next;
    };
    std::unordered_map<std::size_t, std::size_t> copies;
    auto const copyOf = [&](std::size_t original)
    {
        std::size_t const copy = m_model.components.size();
        ModelComponent component = m_model.components[original];
        std::erase_if(component.geometry, [&](ModelGeometry const& geometry)
                      { return !isIn(only, geometry) && !only.contains(geometry.bodyId); });
        m_model.components.push_back(std::move(component));
        copies.emplace(original, copy);
        return copy;
    };
    std::unordered_set<std::size_t> empty;
    m_model.root = copyOf(m_model.root);
    std::vector<Step> path{{m_model.root, 0}};
    while (!path.empty())
    {
        std::size_t const current = path.back().component;
        if (path.back().next == m_model.components[current].placements.size())
        {
            ModelComponent& component = m_model.components[current];
            std::erase_if(component.placements,
                          [&](ModelPlacement const& placement) { return empty.contains(placement.target); });
            if (component.placements.empty() && component.geometry.empty())
                empty.insert(current);
            path.pop_back();
            continue;
        }
        std::size_t const place = path.back().next++;
        std::size_t const target = m_model.components[current].placements[place].target;
        if (isIn(only, m_model.components[current].placements[place]) || isIn(only, m_model.components[target]))
            continue;
        auto const known = copies.find(target);
        bool const isNew = known == copies.end();
        std::size_t const copy = isNew ? copyOf(target) : known->second;
        m_model.components[current].placements[place].target = copy;
        if (isNew)
            path.push_back({copy, 0});
    }
}

}  // namespace KVR
