#include "scene/SceneTotals.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>

#include "scene/PostOrder.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

using Count = unsigned long long;

Count Sum(Count a, Count b)
{
    Count const most = std::numeric_limits<Count>::max();
    return a > most - b ? most : a + b;
}

// What is reached from the root, in one pass over all placements: of a large scene they are more memory than any cache
// has.
struct Reached
{
    // Each component behind those that it places. Its targets stand behind those of the components in front.
    struct Component
    {
        std::size_t index;
        std::size_t firstTarget;
    };
    std::vector<Component> components;
    std::vector<std::size_t> targets;
    std::vector<IObject const*> instances;
};

Reached ReachedIn(Scene const& scene)
{
    Reached reached;
    if (scene.Root() == kNoIndex)
        return reached;
    std::vector<bool> isDone(scene.Components().size(), false);
    InPostOrder(
        scene, scene.Root(), [&](std::size_t index) { return isDone[index]; },
        [&](std::size_t index)
        {
            isDone[index] = true;
            reached.components.push_back({index, reached.targets.size()});
            for (ScenePlacement const& placement : scene.Components()[index].placements)
            {
                if (placement.object && placement.cut != SceneCut::kFiltered)
                    reached.instances.push_back(placement.object);
                if (placement.IsEntered())
                    reached.targets.push_back(placement.target);
            }
        });
    return reached;
}

// How many different ones there are: an instance may be listed by several assemblies.
Count DifferentOf(std::vector<IObject const*>& objects)
{
    if (objects.empty())
        return 0;
    // Those that lie near one another are ticked off by their addresses, in a fraction of the time of sorting.
    constexpr std::uintptr_t kMostTicksEach = 256;
    auto const addressOf = [](IObject const* object) { return reinterpret_cast<std::uintptr_t>(object); };
    auto const [first, last] = std::minmax_element(objects.begin(), objects.end(), std::less<>());
    std::uintptr_t const low = addressOf(*first);
    std::uintptr_t const ticks = (addressOf(*last) - low) / alignof(void*) + 1;
    if (ticks / kMostTicksEach > objects.size())
    {
        std::sort(objects.begin(), objects.end(), std::less<>());
        return static_cast<Count>(std::unique(objects.begin(), objects.end()) - objects.begin());
    }
    std::vector<bool> isMet(ticks, false);
    Count count = 0;
    for (IObject const* const object : objects)
    {
        std::vector<bool>::reference tick = isMet[(addressOf(object) - low) / alignof(void*)];
        count += tick ? 0 : 1;
        tick = true;
    }
    return count;
}

}  // namespace

SceneTotals SceneTotals::Of(Scene const& scene)
{
    SceneTotals totals;
    std::vector<SceneComponent> const& components = scene.Components();
    Reached reached = ReachedIn(scene);
    totals.instances = DifferentOf(reached.instances);
    totals.occurrencesOf.resize(components.size(), 0);
    std::vector<Count> levels(components.size(), 0);
    if (!reached.components.empty())
        totals.occurrencesOf[scene.Root()] = 1;
    for (; !reached.components.empty(); reached.components.pop_back())
    {
        auto const [index, firstTarget] = reached.components.back();
        SceneComponent const& component = components[index];
        Count const count = totals.occurrencesOf[index];
        bool const isFile = component.kind == SceneComponent::Kind::kFile;
        bool const isPart = component.kind == SceneComponent::Kind::kPart;
        ++(isFile ? totals.files : isPart ? totals.parts : totals.assemblies);
        Count& ofKind = isFile ? totals.fileOccurrences : isPart ? totals.partOccurrences : totals.assemblyOccurrences;
        ofKind = Sum(ofKind, count);
        totals.occurrences = Sum(totals.occurrences, count);
        // Of the levels of all places that lead here, the deepest.
        levels[index] += isFile ? 0 : 1;
        totals.deepestLevel = std::max(totals.deepestLevel, levels[index]);
        for (; reached.targets.size() > firstTarget; reached.targets.pop_back())
        {
            std::size_t const target = reached.targets.back();
            totals.occurrencesOf[target] = Sum(totals.occurrencesOf[target], count);
            levels[target] = std::max(levels[target], levels[index]);
        }
    }
    return totals;
}

unsigned long long SceneTotals::CountOccurrences(Scene const& scene)
{
    if (scene.Root() == kNoIndex)
        return 0;
    // Below and with each component; 0 where that is not known yet.
    std::vector<Count> counts(scene.Components().size(), 0);
    InPostOrder(
        scene, scene.Root(), [&](std::size_t index) { return counts[index] > 0; },
        [&](std::size_t index)
        {
            Count count = 1;
            for (ScenePlacement const& placement : scene.Components()[index].placements)
                if (placement.IsEntered())
                    count = Sum(count, counts[placement.target]);
            counts[index] = count;
        });
    return counts[scene.Root()];
}

}  // namespace KVR
