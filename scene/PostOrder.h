#pragma once

#include <cstddef>
#include <vector>

#include "scene/Scene.h"

namespace KVR
{

/// Does work for a component and all below it that `isDone` does not answer for, each after those that it places and
/// once. It takes no stack, and no time for what is below a component that is done.
template <class IsDone, class Work>
void InPostOrder(Scene const& scene, std::size_t component, IsDone const& isDone, Work const& work)
{
    struct Step
    {
        std::size_t component;
        std::size_t next;
    };
    if (isDone(component))
        return;
    std::vector<Step> path{{component, 0}};
    while (!path.empty())
    {
        Step& step = path.back();
        std::vector<ScenePlacement> const& placements = scene.Components()[step.component].placements;
        if (step.next < placements.size())
        {
            ScenePlacement const& placement = placements[step.next++];
            if (placement.IsEntered() && !isDone(placement.target))
                path.push_back({placement.target, 0});
            continue;
        }
        work(step.component);
        path.pop_back();
    }
}

}  // namespace KVR
