#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/UniqueIndex.h"

namespace KVR
{

/// Different id sets in insertion order; two sets are equal when they hold equal ids in equal order.
class KVR_API IdSetSet
{
public:
    IdSetSet();
    ~IdSetSet();
    IdSetSet(IdSetSet const&) = default;
    /// What was moved from is empty.
    IdSetSet(IdSetSet&& other) noexcept;
    IdSetSet& operator=(IdSetSet const&) = default;
    IdSetSet& operator=(IdSetSet&& other) noexcept;

    /// Appends the set unless an equal one is there already; constant time also for a long list.
    void AddWithUniquenessCheck(IdSet const& set);
    void AddWithUniquenessCheck(IdSet&& set);
    /// The number of sets.
    unsigned long long Size() const noexcept { return m_sets.size(); }
    /// Whether there is no set.
    bool IsEmpty() const noexcept { return m_sets.empty(); }
    /// Throws std::out_of_range for an index at or beyond the size.
    IdSet const& At(unsigned long long index) const;
    /// The same as At.
    IdSet const& operator[](unsigned long long index) const { return At(index); }

private:
    template <class Set>
    void AddUnlessFound(Set&& set);
    std::uint32_t Find(IdSet const& set, std::size_t hash) const;

    std::vector<IdSet> m_sets;
    // Covers all sets once the list has grown long, and none before.
    UniqueIndex m_index;
};

}  // namespace KVR
