#include <unordered_map>
#include <unordered_set>

#include "scene/reader/FilterNames.h"
#include "scene/reader/SceneContent.h"
#include "scene/reader/SceneCuts.h"

namespace KVR
{

namespace
{

void Cut(SceneContent& content, std::size_t component, std::size_t placement)
{
    content.components[component].placements[placement].cut = SceneCut::kFiltered;
    content.cuts.push_back({component, placement, SceneCut::kFiltered});
}

template <class IsOut>
void EraseGeometry(SceneContent& content, std::size_t component, IsOut const& isOut)
{
    content.filteredGeometry += std::erase_if(content.components[component].geometry, isOut);
}

void Hide(SceneContent& content, FilterNames const& hidden)
{
    for (std::size_t index = 0; index < content.components.size(); ++index)
    {
        // Nothing places the root.
        bool const isAll = index == content.root && hidden.Has(content.components[index]);
        std::vector<ScenePlacement> const& placements = content.components[index].placements;
        for (std::size_t i = 0; i < placements.size(); ++i)
            if (placements[i].IsEntered() &&
                (isAll || hidden.Has(placements[i]) || hidden.Has(content.components[placements[i].target])))
                Cut(content, index, i);
        EraseGeometry(content, index,
                      [&](SceneGeometry const& geometry)
                      { return isAll || hidden.Has(geometry) || hidden.HasId(geometry.bodyId); });
    }
}

// Components under something wanted stay as they are. Others keep what leads to something wanted: since a component may
// stand under both, the second kind is a copy, made where one is needed.
class Reduction
{
public:
    Reduction(SceneContent& content, FilterNames const& wanted) : m_content(content), m_wanted(wanted) {}

    void Reduce()
    {
        m_content.root = CopyOf(m_content.root);
        m_path.push_back({m_content.root, 0});
        while (!m_path.empty())
        {
            if (m_path.back().next < m_content.components[m_path.back().component].placements.size())
                Follow();
            else
                Leave();
        }
    }

private:
    struct Step
    {
        std::size_t component;
        std::size_t next;
    };

    std::size_t CopyOf(std::size_t original)
    {
        std::size_t const copy = m_content.components.size();
        SceneComponent component = m_content.components[original];
        m_content.components.push_back(std::move(component));
        EraseGeometry(m_content, copy,
                      [&](SceneGeometry const& geometry)
                      { return !m_wanted.Has(geometry) && !m_wanted.HasId(geometry.bodyId); });
        m_copies.emplace(original, copy);
        return copy;
    }

    void Follow()
    {
        Step& step = m_path.back();
        std::size_t const current = step.component;
        std::size_t const place = step.next++;
        ScenePlacement const& placement = m_content.components[current].placements[place];
        std::size_t const target = placement.target;
        if (!placement.IsEntered() || m_wanted.Has(placement) || m_wanted.Has(m_content.components[target]))
            return;
        auto const known = m_copies.find(target);
        bool const isNew = known == m_copies.end();
        std::size_t const copy = isNew ? CopyOf(target) : known->second;
        m_content.components[current].placements[place].target = copy;
        if (isNew)
            m_path.push_back({copy, 0});
    }

    void Leave()
    {
        std::size_t const current = m_path.back().component;
        m_path.pop_back();
        SceneComponent const& component = m_content.components[current];
        bool isEmpty = component.geometry.empty();
        for (std::size_t i = 0; i < component.placements.size(); ++i)
        {
            ScenePlacement const& placement = component.placements[i];
            if (placement.IsEntered() && m_empty.contains(placement.target))
                Cut(m_content, current, i);
            isEmpty = isEmpty && !placement.IsEntered();
        }
        if (isEmpty)
            m_empty.insert(current);
    }

    SceneContent& m_content;
    FilterNames const& m_wanted;
    std::unordered_map<std::size_t, std::size_t> m_copies;
    std::unordered_set<std::size_t> m_empty;
    std::vector<Step> m_path;
};

}  // namespace

void ApplyFilter(SceneContent& content, SceneFilter const& filter)
{
    if (content.root == kNoIndex)
        return;
    std::vector<SceneFilterError::Unmatched> unmatched;
    FilterNames const hidden(content, filter.hide, unmatched);
    FilterNames const only(content, filter.only, unmatched);
    if (!unmatched.empty())
        throw SceneFilterError(std::move(unmatched));
    if (!hidden.IsEmpty())
        Hide(content, hidden);
    if (!only.IsEmpty() && !only.Has(content.components[content.root]))
        Reduction(content, only).Reduce();
}

}  // namespace KVR
