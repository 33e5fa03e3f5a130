#include "host/tree/TreeWriter.h"

#include <limits>

#include "scene/SceneTotals.h"

namespace KVR
{

unsigned long long TreeWriter::ProductOccurrences(SceneTotals const& totals) noexcept
{
    unsigned long long sum = 0;
    if (__builtin_add_overflow(totals.assemblyOccurrences, totals.partOccurrences, &sum))
        return std::numeric_limits<unsigned long long>::max();
    return sum;
}

}  // namespace KVR
