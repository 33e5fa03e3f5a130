#include "inspect/geometry/SceneUnits.h"

#include <algorithm>
#include <set>
#include <utility>

#include "framework/api/LengthUnits.h"
#include "inspect/geometry/MetricBox.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

// The diagonal of what a part has of bodies and meshes; 0 for one without.
double LengthOf(SceneComponent const& part)
{
    double length = 0.0;
    for (SceneGeometry const& geometry : part.geometry)
        if (std::optional<MetricBox> const box = MetricBox::Of(geometry))
            length = std::max(length, box->Diagonal());
    return length;
}

}  // namespace

std::vector<UnitChange> UnitChange::Of(Scene const& scene)
{
    std::vector<UnitChange> changes;
    std::set<std::pair<std::size_t, std::size_t>> told;
    std::vector<SceneComponent> const& components = scene.Components();
    for (std::size_t above = 0; above < components.size(); ++above)
    {
        SceneComponent const& assembly = components[above];
        if (assembly.kind == SceneComponent::Kind::kFile || MetresOf(assembly.unit) <= 0.0)
            continue;
        for (ScenePlacement const& placement : assembly.placements)
        {
            if (placement.target == kNoIndex)
                continue;
            SceneComponent const& placed = components[placement.target];
            if (placed.kind != SceneComponent::Kind::kFile && MetresOf(placed.unit) > 0.0 &&
                placed.unit != assembly.unit && told.emplace(above, placement.target).second)
                changes.push_back({above, placement.target});
        }
    }
    return changes;
}

std::optional<GiantParts> GiantParts::Of(Scene const& scene)
{
    if (scene.MetresPerUnit() < kShortestUnit)
        return {};
    GiantParts giants;
    std::vector<SceneComponent> const& components = scene.Components();
    for (std::size_t i = 0; i < components.size(); ++i)
    {
        if (components[i].kind != SceneComponent::Kind::kPart)
            continue;
        double const length = LengthOf(components[i]);
        if (length <= 0.0)
            continue;
        if (components[i].metresPerUnit < kShortestUnit || length < kSmallest)
            return {};
        if (giants.count++ == 0 || length < giants.length)
        {
            giants.smallest = i;
            giants.length = length;
        }
    }
    return giants.count > 0 ? std::optional(giants) : std::nullopt;
}

}  // namespace KVR
