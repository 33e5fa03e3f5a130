#include "framework/api/IdSetSet.h"

#include <algorithm>
#include <utility>

#include "framework/api/Subscript.h"

namespace KVR
{

IdSetSet::IdSetSet() = default;
IdSetSet::~IdSetSet() = default;

// An index that is moved from keeps its count.
IdSetSet::IdSetSet(IdSetSet&& other) noexcept
    : m_sets(std::exchange(other.m_sets, {})), m_index(std::exchange(other.m_index, {}))
{
}

IdSetSet& IdSetSet::operator=(IdSetSet&& other) noexcept
{
    IdSetSet taken(std::move(other));
    m_sets.swap(taken.m_sets);
    std::swap(m_index, taken.m_index);
    return *this;
}

std::uint32_t IdSetSet::Find(IdSet const& set, std::size_t hash) const
{
    return m_index.Find(hash, [&](std::uint32_t position) { return m_sets[position] == set; });
}

template <class Set>
void IdSetSet::AddUnlessFound(Set&& set)
{
    if (m_sets.size() < UniqueIndex::kShortList)
    {
        if (std::find(m_sets.begin(), m_sets.end(), set) == m_sets.end())
            m_sets.push_back(std::forward<Set>(set));
        return;
    }
    if (m_index.IsEmpty())
    {
        UniqueIndex index;
        for (std::uint32_t i = 0; i < m_sets.size(); ++i)
            index.Add(m_sets[i].Hash(), i);
        m_index = std::move(index);
    }
    std::size_t const hash = set.Hash();
    if (Find(set, hash) != UniqueIndex::kAbsent)
        return;
    m_sets.push_back(std::forward<Set>(set));
    m_index.Add(hash, static_cast<std::uint32_t>(m_sets.size() - 1));
}

void IdSetSet::AddWithUniquenessCheck(IdSet const& set)
{
    AddUnlessFound(set);
}
void IdSetSet::AddWithUniquenessCheck(IdSet&& set)
{
    AddUnlessFound(std::move(set));
}

IdSet const& IdSetSet::At(unsigned long long index) const
{
    return CheckedAt(m_sets, index);
}

}  // namespace KVR
