#pragma once

#include <vector>

#include "framework/api/IdSet.h"

namespace KVR
{

/// Occurrence paths in the order in which they were added, repeats included.
class KVR_API OccurrencePathCollection
{
public:
    OccurrencePathCollection();
    ~OccurrencePathCollection();
    OccurrencePathCollection(OccurrencePathCollection const&) = default;
    OccurrencePathCollection(OccurrencePathCollection&&) noexcept = default;
    OccurrencePathCollection& operator=(OccurrencePathCollection const&) = default;
    OccurrencePathCollection& operator=(OccurrencePathCollection&&) noexcept = default;

    /// Appends the path in any case.
    void AddPath(IdSet const& path);
    /// The number of paths.
    unsigned long long Size() const noexcept { return m_paths.size(); }
    /// Whether there is no path.
    bool IsEmpty() const noexcept { return m_paths.empty(); }
    /// Throws std::out_of_range for an index at or beyond the size.
    IdSet const& At(unsigned long long index) const;

private:
    std::vector<IdSet> m_paths;
};

}  // namespace KVR
