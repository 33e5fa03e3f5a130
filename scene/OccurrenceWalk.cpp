#include "scene/OccurrenceWalk.h"

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
        SceneComponent const& root = components[m_root];
        Matrix const step = Scaling(root.metresPerUnit / m_scene->MetresPerUnit());
        m_path.push_back({m_root, 0, nullptr, OccurrenceState(root), step, step});
        return true;
    }
    while (!m_path.empty())
    {
        Level& level = m_path.back();
        std::vector<ScenePlacement> const& placements = components[level.component].placements;
        if (level.next == placements.size())
        {
            m_path.pop_back();
            continue;
        }
        ScenePlacement const& placement = placements[level.next++];
        if (placement.IsEntered() && Enter(placement))
            return true;
    }
    return false;
}

bool OccurrenceWalk::Enter(ScenePlacement const& placement)
{
    std::vector<SceneComponent> const& components = m_scene->Components();
    Level const& above = m_path.back();
    SceneComponent const& owner = components[above.component];
    SceneComponent const& target = components[placement.target];
    OccurrenceState state = above.state.Below(placement, target);
    if (m_mode == Mode::kVisible && !state.isVisible)
        return false;
    Matrix const step = Product(state.transform, Scaling(target.metresPerUnit / owner.metresPerUnit));
    Matrix const place = Product(above.place, step);
    m_path.push_back({placement.target, 0, &placement, std::move(state), step, place});
    return true;
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
