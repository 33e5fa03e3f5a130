#include "organisation/ViewMembers.h"

#include <utility>

namespace KVR
{

void ViewMembers::Add(ViewMemberRecord record)
{
    std::size_t const hash = record.occurrencePath.Hash();
    auto const place = static_cast<std::uint32_t>(m_records.size());
    std::uint32_t const known =
        m_pathIndex.Find(hash, [&](std::uint32_t position)
                         { return m_records[m_places[position]].occurrencePath == record.occurrencePath; });
    m_records.push_back(std::move(record));
    m_isReplaced.push_back(false);
    if (known == UniqueIndex::kAbsent)
    {
        m_places.push_back(place);
        m_pathIndex.Add(hash, static_cast<std::uint32_t>(m_places.size() - 1));
        return;
    }
    std::uint32_t const former = std::exchange(m_places[known], place);
    m_isReplaced[former] = true;
    ++m_replacedCount;
    // Its ids are not needed any more, and may be many.
    m_records[former] = ViewMemberRecord();
}

void ViewMembers::CloseGaps()
{
    if (m_replacedCount > 0)
    {
        std::vector<ViewMemberRecord> kept;
        kept.reserve(m_records.size() - m_replacedCount);
        for (std::size_t i = 0; i < m_records.size(); ++i)
        {
            if (!m_isReplaced[i])
                kept.push_back(std::move(m_records[i]));
        }
        m_records = std::move(kept);
    }
    m_records.shrink_to_fit();
    m_isReplaced = {};
    m_replacedCount = 0;
    m_places = {};
    m_pathIndex = {};
}

}  // namespace KVR
