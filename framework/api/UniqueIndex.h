#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KVR
{

/// An open-addressed table from hash to position in a list that its owner keeps. It holds positions alone, eight bytes
/// each at most half full, so that a list pays for it only once a linear search would cost more.
class UniqueIndex
{
public:
    static constexpr std::uint32_t kAbsent = 0xFFFFFFFFU;
    /// Lists up to this length are searched without an index.
    static constexpr std::size_t kShortList = 16;

    /// The position for which `equal(position)` holds among those entered under `hash`, or kAbsent.
    template <class Equal>
    std::uint32_t Find(std::size_t hash, Equal&& equal) const
    {
        if (m_slots.empty())
            return kAbsent;
        std::uint32_t const tag = Tag(hash);
        std::size_t const mask = m_slots.size() - 1;
        for (std::size_t i = tag & mask;; i = (i + 1) & mask)
        {
            Slot const& slot = m_slots[i];
            if (slot.position == kAbsent)
                return kAbsent;
            if (slot.tag == tag && equal(slot.position))
                return slot.position;
        }
    }

    /// Makes room for so many positions in all.
    void Reserve(std::size_t count)
    {
        if (std::size_t const slotCount = std::bit_ceil(2 * std::max(count, kShortList)); slotCount > m_slots.size())
            Grow(slotCount);
    }

    /// Whether nothing was entered.
    bool IsEmpty() const noexcept { return m_count == 0; }
    /// Begins to fetch what Find and Add will ask for under this hash: many hashes together take little longer than
    /// one.
    void Prefetch([[maybe_unused]] std::size_t hash) const noexcept
    {
#if defined(__GNUC__)
        if (!m_slots.empty())
            __builtin_prefetch(&m_slots[Tag(hash) & (m_slots.size() - 1)], 1);
#endif
    }

    /// Enters a position.
    void Add(std::size_t hash, std::uint32_t position)
    {
        if (2 * (m_count + 1) > m_slots.size())
            Grow();
        Place({Tag(hash), position});
        ++m_count;
    }

private:
    // The tag says where the slot belongs in a table of any size, so that growing asks nobody for a hash.
    struct Slot
    {
        std::uint32_t tag = 0;
        std::uint32_t position = kAbsent;
    };

    static std::uint32_t Tag(std::size_t hash)
    {
        return static_cast<std::uint32_t>(hash ^ (static_cast<std::uint64_t>(hash) >> 32));
    }

    void Place(Slot slot)
    {
        std::size_t const mask = m_slots.size() - 1;
        std::size_t i = slot.tag & mask;
        while (m_slots[i].position != kAbsent)
            i = (i + 1) & mask;
        m_slots[i] = slot;
    }

    void Grow()
    {
        Grow(m_slots.empty() ? 4 * kShortList : 2 * m_slots.size());
    }

    void Grow(std::size_t slotCount)
    {
        std::vector<Slot> former(slotCount);
        former.swap(m_slots);
        for (Slot const& slot : former)
        {
            if (slot.position != kAbsent)
                Place(slot);
        }
    }

    std::vector<Slot> m_slots;
    std::size_t m_count = 0;
};

}  // namespace KVR
