#pragma once

#include <cstddef>
#include <vector>

namespace KVR
{

/// How often each component occurs below the roots: `targetsOf` answers the components that one places, with repeats.
/// There are no cycles.
template <class TargetsOf>
std::vector<double> OccurrenceCounts(std::size_t count, std::vector<std::size_t> const& roots,
                                     TargetsOf const& targetsOf)
{
    // Components in an order in which what places comes before what is placed.
    std::vector<std::size_t> order;
    std::vector<unsigned char> marks(count, 0);
    struct Step
    {
        std::size_t component;
        std::vector<std::size_t> targets;
        std::size_t next = 0;
    };
    for (std::size_t const root : roots)
    {
        if (marks[root] != 0)
            continue;
        marks[root] = 1;
        std::vector<Step> path;
        path.push_back({root, targetsOf(root)});
        while (!path.empty())
        {
            Step& step = path.back();
            if (step.next == step.targets.size())
            {
                order.push_back(step.component);
                path.pop_back();
                continue;
            }
            std::size_t const target = step.targets[step.next++];
            if (marks[target] != 0)
                continue;
            marks[target] = 1;
            path.push_back({target, targetsOf(target)});
        }
    }
    std::vector<double> counts(count, 0.0);
    for (std::size_t const root : roots)
        counts[root] += 1.0;
    for (auto component = order.rbegin(); component != order.rend(); ++component)
        for (std::size_t const target : targetsOf(*component))
            counts[target] += counts[*component];
    return counts;
}

}  // namespace KVR
