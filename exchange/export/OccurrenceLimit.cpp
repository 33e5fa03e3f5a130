#include "exchange/export/OccurrenceLimit.h"

#include <stdexcept>
#include <string>

#include "scene/SceneTotals.h"

namespace KVR
{

void RefuseMoreOccurrences(Scene const& scene, unsigned long long limit)
{
    if (SceneTotals::Of(scene).occurrences > limit)
        throw std::runtime_error("the scene has more than " + std::to_string(limit) +
                                 " occurrences, which no other program would open; --only exports a part of it");
}

}  // namespace KVR
