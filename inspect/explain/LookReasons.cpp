#include "inspect/explain/LookReasons.h"

#include <optional>
#include <string>
#include <string_view>

#include "scene/OccurrenceWalk.h"
#include "scene/SceneStyle.h"

namespace KVR
{

namespace
{

using Levels = std::vector<OccurrenceLevel>;

std::string Named(char const* kind, std::string_view id)
{
    return std::string(kind) + " " + std::string(id);
}

// What the component of one level says of another below it, or of geometry there; null for nothing. Its paths have the
// ids of placements, behind which that of what they place may stand.
SceneOverride const* SaidBy(Levels const& levels, std::size_t by, std::size_t of, std::string_view last)
{
    SceneOverride const* at = levels[by].component->overrides;
    std::vector<SceneOverride const*> reached{at};
    auto const step = [&](std::string_view id)
    {
        std::vector<SceneOverride const*> next;
        for (SceneOverride const* const each : reached)
            if (auto const found = each->below.find(id); found != each->below.end())
                next.push_back(found->second);
        return next;
    };
    if (!at)
        return nullptr;
    for (std::size_t level = by + 1; level <= of && !reached.empty(); ++level)
    {
        reached = step(levels[level].placement->id);
        if (level == of && last.empty())
            break;
        std::vector<SceneOverride const*> const placed = step(levels[level].component->id);
        reached.insert(reached.end(), placed.begin(), placed.end());
    }
    if (!last.empty())
        reached = step(last);
    return reached.empty() ? nullptr : reached.front();
}

// The outermost component that states something of a level, or of geometry there.
template <class Value>
SceneComponent const* Decider(Levels const& levels, std::size_t of, SceneGeometry const* geometry,
                              std::optional<Value> SceneOverride::*member)
{
    for (std::string_view const id :
         {geometry ? geometry->id : std::string_view(), geometry ? geometry->bodyId : std::string_view()})
    {
        for (std::size_t by = 0; by < (geometry ? of + 1 : of); ++by)
            if (SceneOverride const* const said = SaidBy(levels, by, of, id); said && said->*member)
                return levels[by].component;
        if (!geometry)
            break;
        if (geometry->bodyId.empty())
            break;
    }
    return nullptr;
}

std::string Override(SceneComponent const& decider)
{
    return "an override of " + Named("the assembly", decider.id);
}

// As OccurrenceState finds it: instances and what is said of them, the outermost first; then what is said of geometry;
// then geometry, and the nearest component with a style.
std::string StyleReason(Levels const& levels, SceneGeometry const* geometry, SceneStyle const* style)
{
    for (std::size_t level = 1; level < levels.size(); ++level)
    {
        ScenePlacement const& placement = *levels[level].placement;
        if (SceneComponent const* const decider = Decider(levels, level, nullptr, &SceneOverride::style))
        {
            SceneOverride const* said = nullptr;
            for (std::size_t by = 0; by < level && !(said && said->style); ++by)
                said = SaidBy(levels, by, level, {});
            if (said && said->style && *said->style)
                return Override(*decider) + " gives it to " + Named("the instance", placement.id);
        }
        else if (placement.style)
            return Named("the instance", placement.id) + " has it, and all below looks so";
    }
    std::size_t const last = levels.size() - 1;
    if (geometry)
    {
        if (SceneComponent const* const decider = Decider(levels, last, geometry, &SceneOverride::style))
            return Override(*decider) + (style ? " gives it to this geometry" : " takes away its own");
        if (geometry->style)
            return "it is its own, and nothing above it says otherwise";
    }
    for (std::size_t level = levels.size(); level-- > 0;)
        if (levels[level].component->style)
            return (level == last && !geometry
                        ? std::string("it is its own, and nothing above it says otherwise")
                        : "it is that of " + Named("the component", levels[level].component->id) +
                              ", the nearest with any");
    return "nothing from the root to it has a style";
}

std::string VisibilityReason(Levels const& levels, SceneGeometry const* geometry, bool isVisible)
{
    for (std::size_t level = 1; level < levels.size(); ++level)
    {
        ScenePlacement const& placement = *levels[level].placement;
        SceneComponent const* const decider = Decider(levels, level, nullptr, &SceneOverride::isVisible);
        SceneOverride const* said = nullptr;
        for (std::size_t by = 0; decider && by < level && !(said && said->isVisible); ++by)
            said = SaidBy(levels, by, level, {});
        bool const isShown = said && said->isVisible ? *said->isVisible : placement.isVisible;
        if (!isShown)
            return (decider ? Override(*decider) + " hides " : std::string("hidden by itself: ")) +
                   Named("the instance", placement.id);
        if (level + 1 == levels.size() && !geometry && decider)
            return Override(*decider) + " shows it";
    }
    if (!geometry)
        return isVisible ? "nothing hides it or what it stands in" : "it is hidden";
    if (SceneComponent const* const decider = Decider(levels, levels.size() - 1, geometry, &SceneOverride::isVisible))
        return Override(*decider) + (isVisible ? " shows it" : " hides it");
    return isVisible ? "nothing hides it or what it stands in" : "it hides itself";
}

std::string PlaceReason(Levels const& levels, SceneGeometry const* geometry)
{
    std::size_t const last = levels.size() - 1;
    if (SceneComponent const* const decider = Decider(levels, last, geometry, &SceneOverride::transform))
        return Override(*decider) + " places it";
    if (geometry)
        return "its own transform places it in its component";
    if (!levels[last].placement)
        return "it is the root";
    return levels[last].placement->object ? Named("the instance", levels[last].placement->id) + " places it"
                                          : "it stands in its file by itself";
}

}  // namespace

void LevelStack::Follow(OccurrenceWalk const& walk)
{
    m_levels.resize(walk.Depth());
    m_levels.push_back({&walk.Component(), walk.Placement()});
}

ExplainedOccurrence LookOf(OccurrenceWalk const& walk, LevelStack const& levels, SceneGeometry const* geometry)
{
    OccurrenceState const& state = walk.State();
    ExplainedOccurrence look;
    look.isVisible = geometry ? state.IsVisible(*geometry) : state.isVisible;
    SceneStyle const* const whole = state.imposedStyle ? state.imposedStyle : state.inheritedStyle;
    SceneStyle const* const style = geometry ? state.StyleOf(*geometry) : whole;
    if (style)
    {
        look.style = style->id;
        look.styleLabel = style->label;
    }
    look.styleReason = StyleReason(levels.Levels(), geometry, style);
    look.visibilityReason = VisibilityReason(levels.Levels(), geometry, look.isVisible);
    look.placeReason = PlaceReason(levels.Levels(), geometry);
    return look;
}

}  // namespace KVR
