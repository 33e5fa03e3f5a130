#include "inspect/statistics/OccurrenceStatistics.h"

#include <algorithm>
#include <limits>
#include <queue>
#include <unordered_map>

#include "scene/PostOrder.h"
#include "scene/Scene.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

// How often each component occurs, also where that is more than counts hold; `order` has each behind those it places.
std::vector<double> CountsOf(Scene const& scene, std::vector<std::size_t> const& order)
{
    std::vector<double> counts(scene.Components().size(), 0.0);
    counts[scene.Root()] = 1.0;
    for (auto index = order.rbegin(); index != order.rend(); ++index)
        for (ScenePlacement const& placement : scene.Components()[*index].placements)
            if (placement.IsEntered())
                counts[placement.target] += counts[*index];
    return counts;
}

// An occurrence that may be the next one in the list.
struct Candidate
{
    double bytes;
    /// Of two of the same size, the one that was met first comes first.
    std::size_t order;
    std::size_t above;
    /// Its place among the placements of the component above, the largest first.
    std::size_t rank;

    bool operator<(Candidate const& other) const
    {
        return bytes != other.bytes ? bytes < other.bytes : order > other.order;
    }
};

}  // namespace

OccurrenceStatistics::OccurrenceStatistics(Scene const& scene, SceneStatistics const& statistics, std::size_t most)
    : m_scene(&scene), m_amounts(scene.Components().size()), m_occurrencesOf(SceneTotals::Of(scene).occurrencesOf)
{
    if (scene.Root() == kNoIndex)
        return;
    std::vector<std::size_t> order;
    std::vector<bool> isDone(m_amounts.size(), false);
    InPostOrder(
        scene, scene.Root(), [&](std::size_t index) { return isDone[index]; },
        [&](std::size_t index)
        {
            isDone[index] = true;
            order.push_back(index);
        });
    std::vector<double> const counts = CountsOf(scene, order);
    for (SceneStatistics::Component const& component : statistics.components)
        m_amounts[component.index] = component.own;
    for (std::size_t const index : order)
    {
        SceneStatistics::Amount& amount = m_amounts[index];
        for (double* const shared : {&amount.bytes, &amount.seconds, &amount.memory})
            *shared /= counts[index];
        for (ScenePlacement const& placement : scene.Components()[index].placements)
            if (placement.IsEntered())
                amount.Add(m_amounts[placement.target]);
        if (IsAnything(index))
            m_count += std::min(m_occurrencesOf[index], std::numeric_limits<unsigned long long>::max() - m_count);
    }
    if (IsAnything(scene.Root()))
        List(std::min(most, kMost));
}

bool OccurrenceStatistics::IsAnything(std::size_t component) const
{
    SceneStatistics::Amount const& amount = m_amounts[component];
    return amount.bodies > 0 || amount.meshes > 0 || amount.bytes > 0.0;
}

// The placements of a component that have anything.
std::vector<std::size_t> OccurrenceStatistics::LargestFirst(std::size_t component) const
{
    std::vector<ScenePlacement> const& placements = m_scene->Components()[component].placements;
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < placements.size(); ++i)
        if (placements[i].IsEntered() && IsAnything(placements[i].target))
            order.push_back(i);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b)
                     { return m_amounts[placements[a].target].bytes > m_amounts[placements[b].target].bytes; });
    return order;
}

// No occurrence has less than one below it, and of those directly below one the next smaller one is looked at only when
// the one before it is in the list: so there are never more than two candidates for each that is listed.
void OccurrenceStatistics::List(std::size_t most)
{
    std::unordered_map<std::size_t, std::vector<std::size_t>> sorted;
    std::priority_queue<Candidate> candidates;
    std::size_t met = 0;
    auto const placementOf = [&](std::size_t above, std::size_t rank) -> ScenePlacement const*
    {
        std::size_t const component = m_largest[above].component;
        auto const [found, isNew] = sorted.try_emplace(component);
        if (isNew)
            found->second = LargestFirst(component);
        return rank < found->second.size() ? &m_scene->Components()[component].placements[found->second[rank]]
                                           : nullptr;
    };
    auto const consider = [&](std::size_t above, std::size_t rank)
    {
        if (ScenePlacement const* const placement = placementOf(above, rank))
            candidates.push({m_amounts[placement->target].bytes, met++, above, rank});
    };
    if (most > 0)
        m_largest.push_back({m_scene->Root(), nullptr, kNoIndex});
    if (most > 1)
        consider(0, 0);
    while (m_largest.size() < most && !candidates.empty())
    {
        Candidate const next = candidates.top();
        candidates.pop();
        ScenePlacement const* const placement = placementOf(next.above, next.rank);
        m_largest.push_back({placement->target, placement, next.above});
        consider(m_largest.size() - 1, 0);
        consider(next.above, next.rank + 1);
    }
}

SceneStatistics::Amount const& OccurrenceStatistics::AmountOf(Occurrence const& occurrence) const
{
    return m_amounts[occurrence.component];
}

unsigned long long OccurrenceStatistics::CountOf(Occurrence const& occurrence) const
{
    return m_occurrencesOf[occurrence.component];
}

std::string_view OccurrenceStatistics::NameOf(Occurrence const& occurrence) const
{
    SceneComponent const& component = m_scene->Components()[occurrence.component];
    ScenePlacement const* const placement = occurrence.placement;
    if (placement && !placement->label.empty())
        return placement->label;
    if (!component.label.empty())
        return component.label;
    return placement && placement->object ? placement->id : component.id;
}

std::string OccurrenceStatistics::PathOf(Occurrence const& occurrence) const
{
    std::vector<std::string_view> names{NameOf(occurrence)};
    for (std::size_t above = occurrence.above; above != kNoIndex; above = m_largest[above].above)
        names.push_back(NameOf(m_largest[above]));
    std::string path(names.back());
    for (auto name = names.rbegin() + 1; name != names.rend(); ++name)
        (path += '/') += *name;
    return path;
}

}  // namespace KVR
