#include "framework/api/DataIdToPersistentIdMap.h"

#include <cstddef>

#include "framework/api/Subscript.h"

namespace KVR
{

DataIdToPersistentIdMap::~DataIdToPersistentIdMap() = default;
EditableDataIdToPersistentIdMap::EditableDataIdToPersistentIdMap() = default;
EditableDataIdToPersistentIdMap::~EditableDataIdToPersistentIdMap() = default;

void EditableDataIdToPersistentIdMap::Add(UTF8String const& dataId, UTF8String const& persistentId)
{
    auto const [place, isNew] = m_places.try_emplace(dataId, m_entries.size());
    if (!isNew)
        return;
    try
    {
        m_entries.emplace_back(dataId, persistentId);
    }
    catch (...)
    {
        m_places.erase(place);
        throw;
    }
}

void EditableDataIdToPersistentIdMap::Remove(UTF8String const& dataId)
{
    auto const found = m_places.find(dataId);
    if (found == m_places.end())
        return;
    std::size_t const gone = found->second;
    m_places.erase(found);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(gone));
    for (auto& [id, place] : m_places)
    {
        if (place > gone)
            --place;
    }
}

void EditableDataIdToPersistentIdMap::Clear()
{
    m_entries.clear();
    m_places.clear();
}

UTF8String EditableDataIdToPersistentIdMap::DataIdAt(unsigned long long index) const
{
    return CheckedAt(m_entries, index).first;
}

UTF8String EditableDataIdToPersistentIdMap::PersistentIdAt(unsigned long long index) const
{
    return CheckedAt(m_entries, index).second;
}

IsValueSpecifiedEnum EditableDataIdToPersistentIdMap::PersistentId(UTF8String const& dataId,
                                                                   UTF8String& persistentId) const
{
    auto const found = m_places.find(dataId);
    if (found == m_places.end())
        return kIsValueSpecified_No;
    persistentId = m_entries[found->second].second;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
