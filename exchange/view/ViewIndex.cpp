#include "exchange/view/ViewIndex.h"

#include "scene/SceneTotals.h"

namespace KVR
{

ViewIndex::ViewIndex(Scene const& scene)
{
    std::vector<SceneComponent> const& components = scene.Components();
    std::vector<unsigned long long> const occurrences = SceneTotals::Of(scene).occurrencesOf;
    m_numbers.assign(components.size(), kNoIndex);
    m_firstGeometry.assign(components.size(), kNoIndex);
    m_placements.resize(components.size());
    for (std::size_t i = 0; i < components.size(); ++i)
    {
        if (i >= occurrences.size() || occurrences[i] == 0)
            continue;
        m_numbers[i] = m_components.size();
        m_components.push_back(i);
        m_firstGeometry[i] = m_geometryCount;
        m_geometryCount += components[i].geometry.size();
        std::size_t count = 0;
        for (ScenePlacement const& placement : components[i].placements)
            m_placements[i].push_back(placement.cut == SceneCut::kFiltered ? kNoIndex : count++);
    }
}

std::size_t ViewIndex::ComponentAt(std::size_t component) const
{
    return component < m_numbers.size() ? m_numbers[component] : kNoIndex;
}

}  // namespace KVR
