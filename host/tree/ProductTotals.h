#pragma once

#include "framework/api/UTF8String.h"

namespace KVR
{

class IProducer;

/// What a product tree holds. Counts that no number holds stop at the largest one.
struct ProductTotals
{
    // Different objects that the tree reaches.
    unsigned long long files = 0;
    unsigned long long assemblies = 0;
    unsigned long long parts = 0;
    unsigned long long instances = 0;
    /// Places of assemblies and parts in the tree.
    unsigned long long occurrences = 0;
    /// Places of parts among them.
    unsigned long long partOccurrences = 0;
    /// Of assemblies and parts; what stands directly under the root file is at level 1.
    unsigned long long deepestLevel = 0;

    /// The totals of the tree below a root, which may have more occurrences than could ever be walked: every object is
    /// looked at once. An owner within itself is not entered again.
    static ProductTotals Of(IProducer& producer, UTF8String const& rootId);
};

}  // namespace KVR
