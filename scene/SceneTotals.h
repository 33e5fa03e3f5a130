#pragma once

#include <cstddef>
#include <vector>

#include "scene/Export.h"

namespace KVR
{

class Scene;

/// What a scene holds, without walking its occurrences, of which there may be more than could ever be walked: each
/// component is looked at once. Counts that no number holds stop at the largest one. What is cut is not entered.
struct KVR_SCENE_API SceneTotals
{
    // Different objects that are reached from the root.
    unsigned long long files = 0;
    unsigned long long assemblies = 0;
    unsigned long long parts = 0;
    /// Those whose placements are cut included, unless by a filter.
    unsigned long long instances = 0;

    /// All occurrences, that of the root included.
    unsigned long long occurrences = 0;
    unsigned long long fileOccurrences = 0;
    unsigned long long assemblyOccurrences = 0;
    unsigned long long partOccurrences = 0;
    /// Of assemblies and parts; what stands directly under a root file is at level 1. Files are no level.
    unsigned long long deepestLevel = 0;
    /// How often each component occurs; 0 for those that only a filter left over.
    std::vector<unsigned long long> occurrencesOf;

    /// The totals of a scene from its root on; zeros, and an empty list, when it has no root.
    static SceneTotals Of(Scene const& scene);
    /// Its `occurrences` alone, in a fraction of the time.
    static unsigned long long CountOccurrences(Scene const& scene);
};

}  // namespace KVR
