#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "host/export/OccurrenceState.h"
#include "host/export/SceneModel.h"

namespace KVR
{

/// More occurrences than these are no tree that a format of exchange could hold.
constexpr std::size_t kMostOccurrences = 10'000'000;

/// Follows a scene from its root on, occurrence by occurrence, each above those below it and in the order of the scene.
/// `enter` gets what it answered for the occurrence above, the placement (null for the root), the component and its
/// state, and answers something for those below; nothing leaves them out. Throws std::runtime_error when there are more
/// than kMostOccurrences.
template <class Data, class Enter>
void WalkOccurrences(SceneModel const& scene, Data const& above, Enter enter)
{
    struct Step
    {
        std::size_t component;
        std::size_t next;
        OccurrenceState state;
        Data data;
    };
    if (scene.root == SceneModel::kNone)
        return;
    std::size_t count = 0;
    std::vector<Step> path;
    auto const visit = [&](Data const& data, ModelPlacement const* placement, std::size_t component,
                           OccurrenceState state)
    {
        if (++count > kMostOccurrences)
            throw std::runtime_error("the scene has more than " + std::to_string(kMostOccurrences) + " occurrences");
        std::optional<Data> below = enter(data, placement, scene.components[component], state);
        if (below)
            path.push_back({component, 0, std::move(state), std::move(*below)});
    };
    visit(above, nullptr, scene.root, OccurrenceState(scene.components[scene.root]));
    while (!path.empty())
    {
        Step& step = path.back();
        std::vector<ModelPlacement> const& placements = scene.components[step.component].placements;
        if (step.next == placements.size())
        {
            path.pop_back();
            continue;
        }
        ModelPlacement const& placement = placements[step.next++];
        Data const data = step.data;
        visit(data, &placement, placement.target, step.state.Below(placement, scene.components[placement.target]));
    }
}

}  // namespace KVR
