#include "exchange/view/ViewTransforms.h"

#include <algorithm>
#include <cmath>

namespace KVR
{

std::size_t ViewTransforms::IndexOf(Matrix const& transform)
{
    // Beyond this nothing stands anywhere.
    constexpr double kFarthest = 1e30;
    bool const isPlace =
        std::all_of(transform.begin(), transform.end(), [](double x) { return std::abs(x) < kFarthest; });
    auto const [entry, isNew] = m_places.try_emplace(isPlace ? transform : kIdentity, m_places.size());
    if (isNew)
        for (std::size_t i = 0; i < 12; ++i)
            m_numbers.Add(entry->first[i]);
    return entry->second;
}

}  // namespace KVR
