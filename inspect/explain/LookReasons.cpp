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

using Said = std::vector<SceneOverride const*>;

Said Below(Said const& said, std::string_view id)
{
    Said below;
    for (SceneOverride const* const each : said)
        if (auto const found = each->below.find(id); found != each->below.end())
            below.push_back(found->second);
    return below;
}

// What the component of one level says of another below it, or of geometry there. Its paths have the ids of placements,
// behind which that of what they place may stand.
Said SaidBy(Levels const& levels, std::size_t by, std::size_t of, std::string_view geometry)
{
    if (!levels[by].component->overrides)
        return {};
    Said said{levels[by].component->overrides};
    for (std::size_t level = by + 1; level <= of; ++level)
    {
        said = Below(said, levels[level].placement->id);
        if (level == of && geometry.empty())
            return said;
        Said const placed = Below(said, levels[level].component->id);
        said.insert(said.end(), placed.begin(), placed.end());
    }
    return Below(said, geometry);
}

struct Decision
{
    SceneComponent const* by = nullptr;
    SceneOverride const* said = nullptr;
};

// Which component, the outermost first, states something of a level, or of geometry there; and what.
template <class Value>
std::optional<Decision> DecisionOn(Levels const& levels, std::size_t of, SceneGeometry const* geometry,
                                   std::optional<Value> SceneOverride::*member)
{
    std::vector<std::string_view> ids{geometry ? geometry->id : std::string_view()};
    if (geometry && !geometry->bodyId.empty())
        ids.push_back(geometry->bodyId);
    for (std::string_view const id : ids)
        for (std::size_t by = 0; by < (geometry ? of + 1 : of); ++by)
            for (SceneOverride const* const said : SaidBy(levels, by, of, id))
                if (said->*member)
                    return Decision{levels[by].component, said};
    return std::nullopt;
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
        if (auto const decision = DecisionOn(levels, level, nullptr, &SceneOverride::style))
        {
            if (*decision->said->style)
                return Override(*decision->by) + " gives it to " + Named("the instance", placement.id);
        }
        else if (placement.style)
            return Named("the instance", placement.id) + " has it, and all below looks so";
    }
    std::size_t const last = levels.size() - 1;
    if (geometry)
    {
        if (auto const decision = DecisionOn(levels, last, geometry, &SceneOverride::style))
            return Override(*decision->by) + (style ? " gives it to this geometry" : " takes away its own");
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
        auto const decision = DecisionOn(levels, level, nullptr, &SceneOverride::isVisible);
        if (!(decision ? *decision->said->isVisible : placement.isVisible))
            return (decision ? Override(*decision->by) + " hides " : std::string("hidden by itself: ")) +
                   Named("the instance", placement.id);
        if (level + 1 == levels.size() && !geometry && decision)
            return Override(*decision->by) + " shows it";
    }
    if (!geometry)
        return isVisible ? "nothing hides it or what it stands in" : "it is hidden";
    if (auto const decision = DecisionOn(levels, levels.size() - 1, geometry, &SceneOverride::isVisible))
        return Override(*decision->by) + (isVisible ? " shows it" : " hides it");
    return isVisible ? "nothing hides it or what it stands in" : "it hides itself";
}

std::string PlaceReason(Levels const& levels, SceneGeometry const* geometry)
{
    std::size_t const last = levels.size() - 1;
    if (auto const decision = DecisionOn(levels, last, geometry, &SceneOverride::transform))
        return Override(*decision->by) + " places it";
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
