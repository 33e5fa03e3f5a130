#include "exchange/export/ExportTask.h"

#include <algorithm>
#include <stdexcept>

#include "scene/SceneTotals.h"

namespace KVR
{

void NotCarriedCounts::Add(std::string const& kind, unsigned long long count)
{
    if (count == 0)
        return;
    auto const found =
        std::find_if(m_counts.begin(), m_counts.end(), [&](auto const& entry) { return entry.first == kind; });
    if (found == m_counts.end())
        m_counts.emplace_back(kind, count);
    else
        found->second += count;
}

std::string NotCarriedCounts::Sentence() const
{
    std::string sentence;
    for (auto const& [kind, count] : m_counts)
    {
        sentence += sentence.empty() ? "not in it: " : ", ";
        sentence += std::to_string(count) + ' ' + kind;
    }
    return sentence;
}

void RefuseMoreOccurrences(Scene const& scene, unsigned long long limit)
{
    std::string number = std::to_string(limit);
    for (std::size_t place = number.size(); place > 3; place -= 3)
        number.insert(place - 3, ",");
    if (SceneTotals::Of(scene).occurrences > limit)
        throw std::runtime_error("the scene has more than " + number +
                                 " occurrences, which no other program would open; --only exports a part of it");
}

}  // namespace KVR
