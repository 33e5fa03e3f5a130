#include "scene/SceneTotals.h"

#include <algorithm>
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

// The components below the root, each before those that it places.
std::vector<std::size_t> DownwardOrder(Scene const& scene)
{
    std::vector<std::size_t> order;
    if (scene.Root() == kNoIndex)
        return order;
    std::vector<bool> isDone(scene.Components().size(), false);
    InPostOrder(
        scene, scene.Root(), [&](std::size_t index) { return isDone[index]; },
        [&](std::size_t index)
        {
            isDone[index] = true;
            order.push_back(index);
        });
    std::reverse(order.begin(), order.end());
    return order;
}

// Different instances: one may be listed by several assemblies.
Count InstancesOf(Scene const& scene, std::vector<std::size_t> const& components)
{
    std::vector<IObject const*> instances;
    for (std::size_t const component : components)
        for (ScenePlacement const& placement : scene.Components()[component].placements)
            if (placement.object && placement.cut != SceneCut::kFiltered)
                instances.push_back(placement.object);
    std::sort(instances.begin(), instances.end());
    return static_cast<Count>(std::unique(instances.begin(), instances.end()) - instances.begin());
}

}  // namespace

SceneTotals SceneTotals::Of(Scene const& scene)
{
    SceneTotals totals;
    std::vector<SceneComponent> const& components = scene.Components();
    std::vector<std::size_t> const order = DownwardOrder(scene);
    totals.instances = InstancesOf(scene, order);
    totals.occurrencesOf.resize(components.size(), 0);
    std::vector<Count> levels(components.size(), 0);
    if (!order.empty())
        totals.occurrencesOf[scene.Root()] = 1;
    for (std::size_t const index : order)
    {
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
        for (ScenePlacement const& placement : component.placements)
        {
            if (!placement.IsEntered())
                continue;
            totals.occurrencesOf[placement.target] = Sum(totals.occurrencesOf[placement.target], count);
            levels[placement.target] = std::max(levels[placement.target], levels[index]);
        }
    }
    return totals;
}

}  // namespace KVR
