#include "framework/api/IdSetSet.h"

#include "framework/api/Subscript.h"

namespace KVR
{

IdSetSet::IdSetSet() = default;
IdSetSet::~IdSetSet() = default;

void IdSetSet::AddWithUniquenessCheck(IdSet const& set)
{
    std::size_t const hash = set.Hash();
    if (m_index.Find(hash, [&](std::uint32_t at) { return m_sets[at] == set; }) != UniqueIndex::kAbsent)
        return;
    m_sets.push_back(set);
    m_index.Add(hash, static_cast<std::uint32_t>(m_sets.size() - 1));
}

IdSet const& IdSetSet::At(unsigned long long index) const
{
    return CheckedAt(m_sets, index);
}

}  // namespace KVR
