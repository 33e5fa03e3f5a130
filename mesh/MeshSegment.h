#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>

#include "framework/api/Subscript.h"
#include "mesh/StoreMemory.h"

namespace KVR
{

/// The polygons of a face or the vertices of an edge. Faces mostly have polygons that follow one another, which take no
/// memory; others stand in the memory of the store.
struct MeshSegment
{
    /// One of the indices, by its place below the count.
    std::int32_t At(std::size_t place) const noexcept
    {
        return indices ? indices[place] : static_cast<std::int32_t>(first + static_cast<std::uint32_t>(place));
    }

    /// Null for those that follow one another.
    std::int32_t const* indices = nullptr;
    std::size_t count : 63 = 0;
    std::size_t isVisible : 1 = 1;
    std::uint32_t first = 0;
};

/// Segments in the memory of the store. Many records may add to one mesh, so that the list at least doubles when it
/// grows.
class MeshSegmentList
{
public:
    /// Makes room for so many more.
    void ReserveMore(std::size_t count, StoreMemory& memory, StoreMemory::Blocks& blocks)
    {
        std::size_t const needed = m_size + count;
        if (needed <= m_capacity)
            return;
        if (needed > std::numeric_limits<std::uint32_t>::max() / 2)
            ThrowTooLong();
        std::size_t const capacity = std::max<std::size_t>(needed, std::size_t{2} * m_size);
        auto* const grown = reinterpret_cast<MeshSegment*>(memory.Take(capacity * sizeof(MeshSegment), blocks));
        std::uninitialized_copy_n(m_segments, m_size, grown);
        m_segments = grown;
        m_capacity = static_cast<std::uint32_t>(capacity);
    }
    /// Adds one that is visible, for which there is room.
    void Append(std::int32_t const* indices, std::size_t count, std::uint32_t first) noexcept
    {
        std::construct_at(m_segments + m_size++, MeshSegment{.indices = indices, .count = count, .first = first});
    }
    /// The one that was added last is not visible.
    void HideLast() noexcept { m_segments[m_size - 1].isVisible = 0; }
    std::span<MeshSegment const> All() const noexcept { return {m_segments, m_size}; }

private:
    MeshSegment* m_segments = nullptr;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = 0;
};

}  // namespace KVR
