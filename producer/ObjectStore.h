#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api/UTF8String.h"
#include "framework/api/UniqueIndex.h"

namespace KVR
{

/// An object that a store built, until an element of the scene takes it.
template <class Object>
struct StoreEntry
{
    /// Null once taken.
    std::unique_ptr<Object> owned;
    /// The object also afterwards, not owned; null for an id that a reader asked for and no store held.
    Object* object = nullptr;
};

/// The objects of binary stores by their ids, side by side in the order in which they came: a store may hold a hundred
/// thousand. An iterator or a reference is void once another id is entered.
template <class Object>
class ObjectStore
{
public:
    using value_type = std::pair<UTF8String, StoreEntry<Object>>;
    using iterator = typename std::vector<value_type>::iterator;
    using const_iterator = typename std::vector<value_type>::const_iterator;

    bool empty() const noexcept { return m_entries.empty(); }
    std::size_t size() const noexcept { return m_entries.size(); }
    iterator begin() noexcept { return m_entries.begin(); }
    iterator end() noexcept { return m_entries.end(); }
    const_iterator begin() const noexcept { return m_entries.begin(); }
    const_iterator end() const noexcept { return m_entries.end(); }

    /// The end for an id that was not entered.
    iterator find(UTF8String const& id) { return find(id.View()); }
    iterator find(std::string_view id)
    {
        // A store that adds to the objects of another mostly has them in the same order.
        if (m_expected < m_entries.size() && m_entries[m_expected].first.View() == id)
            return begin() + static_cast<std::ptrdiff_t>(m_expected++);
        std::uint32_t const found = Find(id, HashOf(id));
        if (found == UniqueIndex::kAbsent)
            return end();
        m_expected = found + std::size_t{1};
        return begin() + static_cast<std::ptrdiff_t>(found);
    }

    /// The entry of an id, an empty one for a new id, and whether it is new.
    std::pair<iterator, bool> try_emplace(UTF8String const& id)
    {
        std::size_t const hash = HashOf(id.View());
        if (std::uint32_t const found = Find(id.View(), hash); found != UniqueIndex::kAbsent)
            return {begin() + static_cast<std::ptrdiff_t>(found), false};
        m_entries.emplace_back(id, StoreEntry<Object>());
        try
        {
            m_index.Add(hash, static_cast<std::uint32_t>(m_entries.size() - 1));
        }
        catch (...)
        {
            m_entries.pop_back();
            throw;
        }
        return {end() - 1, true};
    }

    StoreEntry<Object>& operator[](UTF8String const& id)
    {
        auto const found = find(id);
        return found != end() ? found->second : try_emplace(id).first->second;
    }

    /// The object so many places behind the one that was found last; null without one.
    Object* Ahead(std::size_t places) const noexcept
    {
        std::size_t const at = m_expected + places;
        return at < m_entries.size() ? m_entries[at].second.object : nullptr;
    }

    /// Makes room for so many more.
    void ReserveMore(std::size_t count)
    {
        m_entries.reserve(m_entries.size() + count);
        m_index.Reserve(m_entries.size() + count);
    }

    void clear() noexcept
    {
        m_entries.clear();
        m_index = UniqueIndex();
        m_expected = 0;
    }

private:
    static std::size_t HashOf(std::string_view id) { return std::hash<std::string_view>()(id); }

    std::uint32_t Find(std::string_view id, std::size_t hash) const
    {
        return m_index.Find(hash, [&](std::uint32_t at) { return m_entries[at].first.View() == id; });
    }

    std::vector<value_type> m_entries;
    UniqueIndex m_index;
    /// The entry behind the one found last.
    std::size_t m_expected = 0;
};

}  // namespace KVR
