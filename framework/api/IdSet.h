#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Object ids in insertion order. An empty set is one pointer; a long one finds an id in constant time. Operations
/// throw std::bad_alloc, and At std::out_of_range.
class KVR_API IdSet
{
public:
    IdSet() noexcept;
    IdSet(IdSet const& other);
    IdSet(IdSet&& other) noexcept;
    ~IdSet();
    IdSet& operator=(IdSet const& other);
    IdSet& operator=(IdSet&& other) noexcept;

    /// Appends the id unless an equal one is there already.
    void AddWithUniquenessCheck(UTF8String const& id);
    void AddWithUniquenessCheck(UTF8String&& id);
    /// Adds each id in turn as above, and empties the list.
    void AddAllWithUniquenessCheck(std::vector<UTF8String>& ids);
    /// Appends the id in any case, so that repeats stay.
    void AddWithoutUniquenessCheck(UTF8String const& id);
    void AddWithoutUniquenessCheck(UTF8String&& id);

    /// Makes room for so many ids in all, for a list whose length is known: growing takes no further memory then.
    void Reserve(unsigned long long count);

    /// Whether the id is in the set, in constant time for a long one.
    bool Contains(UTF8String const& id) const;
    /// The number of ids, repeats included.
    unsigned long long Size() const noexcept;
    /// Whether there is no id.
    bool IsEmpty() const noexcept;
    /// Throws std::out_of_range with "invalid vector<T> subscript" for an index at or beyond the size.
    UTF8String const& At(unsigned long long index) const;
    /// The same as At.
    UTF8String const& operator[](unsigned long long index) const;

    /// Equal ids in equal order.
    friend KVR_API bool operator==(IdSet const& a, IdSet const& b) noexcept;

    /// A hash of the ids in their order, equal for equal sets.
    std::size_t Hash() const noexcept;

private:
    struct Content;

    Content& Owned();

    std::unique_ptr<Content> m_content;
};

}  // namespace KVR
