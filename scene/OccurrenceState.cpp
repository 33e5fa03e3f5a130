#include "scene/OccurrenceState.h"

namespace KVR
{

namespace
{

using Overrides = std::vector<SceneOverride const*>;

// What the outermost that states it says of an id in that member; null when none does.
template <class Value>
Value const* Said(Overrides const& overrides, std::string_view id, std::optional<Value> SceneOverride::*member)
{
    for (SceneOverride const* const outer : overrides)
    {
        auto const found = outer->below.find(id);
        if (found != outer->below.end() && found->second->*member)
            return &*(found->second->*member);
    }
    return nullptr;
}

template <class Value>
Value const* Said(Overrides const& overrides, SceneGeometry const& geometry,
                  std::optional<Value> SceneOverride::*member)
{
    Value const* const own = Said(overrides, geometry.id, member);
    return own || geometry.bodyId.empty() ? own : Said(overrides, geometry.bodyId, member);
}

}  // namespace

OccurrenceState::OccurrenceState(SceneComponent const& root)
{
    Enter(root);
}

void OccurrenceState::Enter(SceneComponent const& component)
{
    if (component.style)
        inheritedStyle = component.style;
    if (component.overrides)
        m_overrides.push_back(component.overrides);
}

OccurrenceState OccurrenceState::Below(ScenePlacement const& placement, SceneComponent const& target) const
{
    OccurrenceState state;
    bool const* const visibility = Said(m_overrides, placement.id, &SceneOverride::isVisible);
    state.showsItself = visibility ? *visibility : placement.isVisible;
    state.isVisible = isVisible && state.showsItself;
    Matrix const* const moved = Said(m_overrides, placement.id, &SceneOverride::transform);
    state.m_transform = moved ? moved : &placement.transform;
    SceneStyle const* const* const styled = Said(m_overrides, placement.id, &SceneOverride::style);
    state.imposedStyle = imposedStyle ? imposedStyle : styled ? *styled : placement.style;
    state.inheritedStyle = inheritedStyle;
    for (SceneOverride const* const outer : m_overrides)
    {
        auto const found = outer->below.find(placement.id);
        if (found == outer->below.end())
            continue;
        state.m_overrides.push_back(found->second);
        // A path may name what an instance places as well.
        auto const placed = found->second->below.find(target.id);
        if (placed != found->second->below.end())
            state.m_overrides.push_back(placed->second);
    }
    state.Enter(target);
    return state;
}

bool OccurrenceState::IsVisible(SceneGeometry const& geometry) const
{
    return isVisible && ShowsItself(geometry);
}

bool OccurrenceState::ShowsItself(SceneGeometry const& geometry) const
{
    bool const* const said = Said(m_overrides, geometry, &SceneOverride::isVisible);
    return said ? *said : geometry.isVisible;
}

Matrix const& OccurrenceState::TransformOf(SceneGeometry const& geometry) const
{
    Matrix const* const said = Said(m_overrides, geometry, &SceneOverride::transform);
    return said ? *said : geometry.transform;
}

Matrix OccurrenceState::PlaceOf(SceneGeometry const& geometry, SceneComponent const& component) const
{
    Matrix const& own = TransformOf(geometry);
    // Also the place is in the geometry's own unit.
    return geometry.metresPerUnit == component.metresPerUnit
               ? own
               : Product(Scaling(geometry.metresPerUnit / component.metresPerUnit), own);
}

SceneStyle const* OccurrenceState::StyleOf(SceneGeometry const& geometry) const
{
    if (imposedStyle)
        return imposedStyle;
    if (SceneStyle const* const* const said = Said(m_overrides, geometry, &SceneOverride::style))
        return *said;
    return geometry.style ? geometry.style : inheritedStyle;
}

bool OccurrenceState::KeepsFaceStyles(SceneGeometry const& geometry) const
{
    return !imposedStyle && !Said(m_overrides, geometry, &SceneOverride::style);
}

}  // namespace KVR
