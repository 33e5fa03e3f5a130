#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// The styles of an object's faces and edges by their data ids.
class KVR_API SubEntityToStylesMap
{
public:
    SubEntityToStylesMap();
    SubEntityToStylesMap(SubEntityToStylesMap const&) = default;
    SubEntityToStylesMap& operator=(SubEntityToStylesMap const&) = default;
    virtual ~SubEntityToStylesMap();

    /// Sets the styles of a face or edge; they replace those held. An empty set counts.
    virtual void SetStyles(UTF8String const& dataId, IdSet const& styles);
    /// Takes the entry out; an unknown data id has no effect.
    void Remove(UTF8String const& dataId);
    /// Takes all entries out.
    void Clear();

    /// The number of entries; 0 for an object whose faces and edges have no styles of their own.
    unsigned long long Size() const noexcept { return m_entries.size(); }
    /// The data id of an entry, in the order of the first SetStyles; a bad index throws std::out_of_range.
    UTF8String const& DataIdAt(unsigned long long index) const;
    /// The styles of an entry, in the same order; a bad index throws std::out_of_range.
    IdSet const& StylesAt(unsigned long long index) const;
    /// Not specified, with the output left alone, for an unknown data id.
    IsValueSpecifiedEnum Styles(UTF8String const& dataId, IdSet& styles) const;

private:
    std::vector<std::pair<UTF8String, IdSet>> m_entries;
    std::unordered_map<UTF8String, std::size_t> m_places;
};

}  // namespace KVR
