#include "exchange/export/OccurrenceLimit.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace KVR
{

namespace
{

// Counts the occurrences in each component, its own included, up to one above the limit.
class Counter
{
public:
    Counter(Scene const& scene, unsigned long long most)
        : m_scene(scene), m_most(most), m_counts(scene.Components().size(), 0)
    {
    }

    // Components nest to a thousand levels at most.
    unsigned long long Of(std::size_t component)
    {
        if (m_counts[component] > 0)
            return m_counts[component];
        unsigned long long count = 1;
        for (ScenePlacement const& placement : m_scene.Components()[component].placements)
            if (placement.IsEntered())
                count = std::min(m_most, count + Of(placement.target));
        return m_counts[component] = count;
    }

private:
    Scene const& m_scene;
    unsigned long long m_most;
    std::vector<unsigned long long> m_counts;
};

}  // namespace

void RefuseMoreOccurrences(Scene const& scene, unsigned long long limit)
{
    if (Counter(scene, limit + 1).Of(scene.Root()) > limit)
        throw std::runtime_error("the scene has more than " + std::to_string(limit) +
                                 " occurrences, which no other program would open; --only exports a part of it");
}

}  // namespace KVR
