#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "framework/api/Exception.h"
#include "framework/api/Polygon.h"
#include "mesh/PolygonSlab.h"

namespace KVR
{

enum PolygonFlags : std::uint32_t
{
    /// Behind the vertex indices stand as many normal indices.
    kPolygon_HasNormals = 0x80000000U,
    /// The vertex indices are the normal indices, too.
    kPolygon_SharesNormals = 0x40000000U,
    /// Behind the other lists stands a pointer to the texture lists: the number of sets, the sets, the number of vertex
    /// indices, and those.
    kPolygon_HasTextures = 0x20000000U
};

/// Behind the flags, a polygon's head has five bits for the number of vertices and 24 for the slot of the material.
/// Where they do not do, the number is 0, and both stand as words of their own in front of the lists.
inline constexpr std::uint32_t kHeadSlots = 0x00FFFFFFU;
inline constexpr std::uint32_t kHeadVertices = 31;
inline constexpr int kHeadVerticesAt = 24;

/// The size that a polygon of so many bytes takes beside others.
constexpr std::size_t AlignedPolygon(std::size_t size)
{
    return (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
}

/// A number of the system's own byte order at any place.
template <class Number>
Number LoadNumber(void const* bytes)
{
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

/// A polygon whose lists stand behind its head, of which a triangle takes 24 bytes in all. Its memory is the store's:
/// releasing one has no effect, and no destructor runs.
class SlabPolygon final : public EditablePolygon
{
public:
    static constexpr std::size_t kHeadEnd = sizeof(EditablePolygon) + sizeof(std::uint32_t);
    static constexpr std::size_t kWideSize = 2 * sizeof(std::uint32_t);

    explicit SlabPolygon(std::uint32_t head) noexcept : m_head(head) {}

    void Release() noexcept override {}
    int VertexCount() const noexcept override
    {
        return static_cast<int>(IsWide() ? LoadNumber<std::uint32_t>(Behind(kHeadEnd))
                                         : m_head >> kHeadVerticesAt & kHeadVertices);
    }
    // A mesh gives its polygons for reading alone.
    void SetVertexIndices(int, int const*) override { Refuse(); }
    void SetNormalIndices(int, int const*) override { Refuse(); }
    void SetTextureVertexIndices(int, int, int const*, int, int const*) override { Refuse(); }

    IndexList VertexIndices() const noexcept override { return {Lists(), VertexCount()}; }
    IndexList NormalIndices() const noexcept override
    {
        if (Has(kPolygon_SharesNormals))
            return VertexIndices();
        return Has(kPolygon_HasNormals) ? IndexList{Lists() + VertexCount(), VertexCount()} : IndexList();
    }
    IndexList TextureSetIndices() const noexcept override
    {
        std::int32_t const* const lists = Textures();
        return lists ? IndexList{lists + 1, lists[0]} : IndexList();
    }
    IndexList TextureVertexIndices() const noexcept override
    {
        std::int32_t const* const lists = Textures();
        return lists ? IndexList{lists + 2 + lists[0], lists[1 + lists[0]]} : IndexList();
    }

    std::uint32_t Head() const noexcept { return m_head; }
    bool IsWide() const noexcept { return (m_head >> kHeadVerticesAt & kHeadVertices) == 0; }
    std::size_t ListsAt() const noexcept { return kHeadEnd + (IsWide() ? kWideSize : 0); }
    std::uint32_t MaterialSlot() const noexcept
    {
        if (IsWide())
            return LoadNumber<std::uint32_t>(Behind(kHeadEnd + sizeof(std::uint32_t)));
        std::uint32_t const slot = m_head & kHeadSlots;
        return slot == kHeadSlots ? kNoMaterialSlot : slot;
    }
    // Says what was not known when the polygon was begun.
    void SetRest(std::uint32_t flags, std::uint32_t slot) noexcept
    {
        m_head |= flags;
        if (IsWide())
            std::memcpy(reinterpret_cast<std::byte*>(this) + kHeadEnd + sizeof slot, &slot, sizeof slot);
        else
            m_head |= slot & kHeadSlots;
    }

private:
    [[noreturn]] static void Refuse() { throw GeneralException("The polygons of a mesh cannot be changed."); }

    bool Has(PolygonFlags flag) const noexcept { return (m_head & flag) != 0; }

    std::byte const* Behind(std::size_t offset) const noexcept
    {
        return reinterpret_cast<std::byte const*>(this) + offset;
    }

    std::int32_t const* Lists() const noexcept { return reinterpret_cast<std::int32_t const*>(Behind(ListsAt())); }

    std::int32_t const* Textures() const noexcept
    {
        if (!Has(kPolygon_HasTextures))
            return nullptr;
        std::size_t const lists = Has(kPolygon_HasNormals) ? 2 : 1;
        std::size_t const size = lists * static_cast<std::size_t>(VertexCount()) * sizeof(std::int32_t);
        return LoadNumber<std::int32_t const*>(Behind(AlignedPolygon(ListsAt() + size)));
    }

    std::uint32_t m_head;
};

}  // namespace KVR
