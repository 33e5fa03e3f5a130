#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// The persistent ids of an object's faces and edges by their data ids.
class KVR_API DataIdToPersistentIdMap
{
public:
    virtual ~DataIdToPersistentIdMap();
    /// The number of entries; 0 for an object without persistent ids.
    virtual unsigned long long Size() const = 0;
    /// The data id of an entry, in insertion order; an index at or beyond the size throws std::out_of_range.
    virtual UTF8String DataIdAt(unsigned long long index) const = 0;
    /// The persistent id of an entry, in insertion order; an index at or beyond the size throws std::out_of_range.
    virtual UTF8String PersistentIdAt(unsigned long long index) const = 0;
    /// The persistent id of a face or edge. Not specified, with the output left alone, for an unknown data id.
    virtual IsValueSpecifiedEnum PersistentId(UTF8String const& dataId, UTF8String& persistentId) const = 0;

protected:
    DataIdToPersistentIdMap() = default;
    DataIdToPersistentIdMap(DataIdToPersistentIdMap const&) = default;
    DataIdToPersistentIdMap& operator=(DataIdToPersistentIdMap const&) = default;
};

/// A map that can be filled. Looking up takes constant time.
class KVR_API EditableDataIdToPersistentIdMap : public DataIdToPersistentIdMap
{
public:
    EditableDataIdToPersistentIdMap();
    EditableDataIdToPersistentIdMap(EditableDataIdToPersistentIdMap const&) = default;
    EditableDataIdToPersistentIdMap& operator=(EditableDataIdToPersistentIdMap const&) = default;
    ~EditableDataIdToPersistentIdMap() override;

    /// Appends an entry; a data id that is there already keeps its first value.
    void Add(UTF8String const& dataId, UTF8String const& persistentId);
    /// Takes the entry out; an unknown data id has no effect.
    void Remove(UTF8String const& dataId);
    /// Takes all entries out.
    void Clear();

    unsigned long long Size() const override { return m_entries.size(); }
    UTF8String DataIdAt(unsigned long long index) const override;
    UTF8String PersistentIdAt(unsigned long long index) const override;
    IsValueSpecifiedEnum PersistentId(UTF8String const& dataId, UTF8String& persistentId) const override;

private:
    std::vector<std::pair<UTF8String, UTF8String>> m_entries;
    std::unordered_map<UTF8String, std::size_t> m_places;
};

}  // namespace KVR
