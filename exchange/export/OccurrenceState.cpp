#include "exchange/export/OccurrenceState.h"

namespace KVR
{

OccurrenceState::OccurrenceState(ModelComponent const& root)
{
    Enter(root);
}

void OccurrenceState::Enter(ModelComponent const& component)
{
    if (!component.style.empty())
        inheritedStyle = component.style;
    if (component.overrides)
        m_overrides.push_back(component.overrides.get());
}

ModelOverride const* OccurrenceState::OverrideOf(std::string const& id, bool (*has)(ModelOverride const&)) const
{
    for (ModelOverride const* const outer : m_overrides)
    {
        auto const found = outer->below.find(id);
        if (found != outer->below.end() && has(*found->second))
            return found->second.get();
    }
    return nullptr;
}

ModelOverride const* OccurrenceState::OverrideOf(ModelGeometry const& geometry, bool (*has)(ModelOverride const&)) const
{
    ModelOverride const* const own = OverrideOf(geometry.id, has);
    return own || geometry.bodyId.empty() ? own : OverrideOf(geometry.bodyId, has);
}

OccurrenceState OccurrenceState::Below(ModelPlacement const& placement, ModelComponent const& target) const
{
    OccurrenceState state;
    ModelOverride const* visibility =
        OverrideOf(placement.id, [](ModelOverride const& entry) { return entry.isVisible.has_value(); });
    state.isVisible = isVisible && (visibility ? *visibility->isVisible : placement.isVisible);
    ModelOverride const* const moved =
        OverrideOf(placement.id, [](ModelOverride const& entry) { return entry.transform.has_value(); });
    state.transform = moved ? *moved->transform : placement.transform;
    ModelOverride const* const styled =
        OverrideOf(placement.id, [](ModelOverride const& entry) { return entry.style.has_value(); });
    state.imposedStyle = !imposedStyle.empty() ? imposedStyle : styled ? *styled->style : placement.style;
    state.inheritedStyle = inheritedStyle;
    for (ModelOverride const* const outer : m_overrides)
    {
        auto const found = outer->below.find(placement.id);
        if (found == outer->below.end())
            continue;
        state.m_overrides.push_back(found->second.get());
        // A path may name what an instance places as well.
        auto const placed = found->second->below.find(target.id);
        if (placed != found->second->below.end())
            state.m_overrides.push_back(placed->second.get());
    }
    state.Enter(target);
    return state;
}

bool OccurrenceState::IsVisible(ModelGeometry const& geometry) const
{
    ModelOverride const* const entry =
        OverrideOf(geometry, [](ModelOverride const& item) { return item.isVisible.has_value(); });
    return isVisible && (entry ? *entry->isVisible : geometry.isVisible);
}

Matrix const& OccurrenceState::TransformOf(ModelGeometry const& geometry) const
{
    ModelOverride const* const entry =
        OverrideOf(geometry, [](ModelOverride const& item) { return item.transform.has_value(); });
    return entry ? *entry->transform : geometry.transform;
}

std::string OccurrenceState::StyleOf(ModelGeometry const& geometry) const
{
    if (!imposedStyle.empty())
        return imposedStyle;
    ModelOverride const* const entry =
        OverrideOf(geometry, [](ModelOverride const& item) { return item.style.has_value(); });
    if (entry)
        return *entry->style;
    return geometry.style.empty() ? inheritedStyle : geometry.style;
}

bool OccurrenceState::KeepsFaceStyles(ModelGeometry const& geometry) const
{
    return imposedStyle.empty() &&
           !OverrideOf(geometry, [](ModelOverride const& item) { return item.style.has_value(); });
}

}  // namespace KVR
