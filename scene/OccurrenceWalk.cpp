#include "scene/OccurrenceWalk.h"

#include <algorithm>
#include <utility>

namespace KVR
{

OccurrenceWalk::OccurrenceWalk(Scene const& scene, Mode mode) : OccurrenceWalk(scene, scene.Root(), mode) {}

OccurrenceWalk::OccurrenceWalk(Scene const& scene, std::size_t component, Mode mode)
    : m_scene(&scene), m_root(component), m_mode(mode)
{
}

bool OccurrenceWalk::Next()
{
    std::vector<SceneComponent> const& components = m_scene->Components();
    if (!m_hasStarted)
    {
        m_hasStarted = true;
        if (m_root == kNoIndex)
            return false;
        Push(m_root, nullptr, OccurrenceState(components[m_root]));
        return true;
    }
    while (!m_path.empty())
    {
        Level& level = m_path.back();
        std::vector<ScenePlacement> const& placements = components[level.component].placements;
        if (level.next == placements.size())
        {
            m_path.pop_back();
            m_placedCount = std::min(m_placedCount, m_path.size());
            continue;
        }
        ScenePlacement const& placement = placements[level.next++];
        if (placement.IsEntered() && Enter(placement))
            return true;
    }
    return false;
}

void OccurrenceWalk::Push(std::size_t component, ScenePlacement const* placement, OccurrenceState&& state)
{
    if (m_placed.size() == m_path.size())
        m_placed.resize(m_path.size() + 1);
    m_path.push_back({component, 0, placement, std::move(state)});
}

bool OccurrenceWalk::Enter(ScenePlacement const& placement)
{
    std::vector<SceneComponent> const& components = m_scene->Components();
    OccurrenceState state = m_path.back().state.Below(placement, components[placement.target]);
    if (m_mode == Mode::kVisible && !state.isVisible)
        return false;
    Push(placement.target, &placement, std::move(state));
    return true;
}

OccurrenceWalk::Placed const& OccurrenceWalk::Here() const noexcept
{
    std::vector<SceneComponent> const& components = m_scene->Components();
    for (; m_placedCount < m_path.size(); ++m_placedCount)
    {
        Level const& level = m_path[m_placedCount];
        SceneComponent const& component = components[level.component];
        Placed& placed = m_placed[m_placedCount];
        if (m_placedCount == 0)
        {
            placed.step = Scaling(component.metresPerUnit / m_scene->MetresPerUnit());
            placed.place = placed.step;
            continue;
        }
        double const above = components[m_path[m_placedCount - 1].component].metresPerUnit;
        placed.step = Product(level.state.Transform(), Scaling(component.metresPerUnit / above));
        placed.place = Product(m_placed[m_placedCount - 1].place, placed.step);
    }
    return m_placed[m_path.size() - 1];
}

void OccurrenceWalk::SkipBelow() noexcept
{
    m_path.back().next = Component().placements.size();
}

SceneComponent const& OccurrenceWalk::Component() const
{
    return m_scene->Components()[m_path.back().component];
}

SceneComponent const* OccurrenceWalk::Above() const
{
    return m_path.size() < 2 ? nullptr : &m_scene->Components()[m_path[m_path.size() - 2].component];
}

std::size_t OccurrenceWalk::PlacementIndex() const noexcept
{
    // The level above goes on behind it.
    return m_path.size() < 2 ? kNoIndex : m_path[m_path.size() - 2].next - 1;
}

std::vector<std::string_view> OccurrenceWalk::Path() const
{
    std::vector<std::string_view> path;
    for (std::size_t i = 1; i < m_path.size(); ++i)
    {
        ScenePlacement const& placement = *m_path[i].placement;
        path.push_back(placement.object ? placement.id : m_scene->Components()[m_path[i].component].id);
    }
    return path;
}

}  // namespace KVR
