#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/api/Polygon.h"
#include "mesh/StoreMemory.h"

namespace KVR
{

/// The polygons of one mesh. They stand side by side with their index lists behind them: a polygon costs no allocation
/// of its own, and all of them are freed at once. Polygons of one size, as in a mesh of triangles, need no table to be
/// found by index.
class PolygonSlab
{
public:
    /// Index lists are counted by int, and of the count three bits are taken for flags.
    static constexpr std::uint32_t kMostVertices = 0x1FFFFFFF;

    /// `mostPolygons` is the most that can come; polygons have normals or textures only if the flag is set. The memory
    /// has to be there while polygons come, the blocks as long as the polygons.
    PolygonSlab(StoreMemory& memory, StoreMemory::Blocks& blocks, std::size_t mostPolygons, bool mayHaveNormals,
                bool mayHaveTextures);
    PolygonSlab(PolygonSlab const&) = delete;
    PolygonSlab& operator=(PolygonSlab const&) = delete;

    /// Adds a polygon without textures in one step: its indices as a store has them, 64-bit numbers in the system's own
    /// byte order, and its normal indices, null for none.
    void Add(std::uint32_t vertexCount, unsigned char const* vertexIndices, unsigned char const* normalIndices,
             std::uint32_t materialSlot);

    /// Begins a polygon for so many vertices, from 1 to the most: the place for its vertex indices, which the caller
    /// fills.
    std::int32_t* Begin(std::uint32_t vertexCount);
    /// The place for the normal indices of the polygon that was begun.
    std::int32_t* AddNormals();
    /// To be called when the normal indices are there: where they are the vertex indices, and those of the first
    /// polygon were too, one list stands for both.
    void EndNormals();
    /// Copies the texture lists of the polygon that was begun.
    void SetTextures(std::vector<std::int32_t> const& setIndices, std::vector<std::int32_t> const& vertexIndices);
    /// Ends the polygon that was begun.
    void End(std::uint32_t materialSlot);
    /// To be called behind the last polygon.
    void Finish() noexcept;

    std::size_t Count() const noexcept { return m_count; }
    EditablePolygon const* At(std::size_t index) const noexcept;
    std::uint32_t MaterialSlotAt(std::size_t index) const noexcept;

private:
    class SlabPolygon;

    static constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

    SlabPolygon* PolygonPlace(std::size_t index) const noexcept;
    void NewPiece(std::size_t needed);
    void UsePlaces();
    bool MayShareNormals(bool isEqual) noexcept;

    StoreMemory& m_memory;
    StoreMemory::Blocks& m_blocks;
    std::size_t m_mostPolygons;
    std::size_t m_listsPerPolygon;
    std::size_t m_bytesForTextures;
    std::size_t m_count = 0;
    /// Pieces of memory, filled one after the other.
    std::vector<std::byte*> m_pieces;
    /// The index of the first polygon in the last piece.
    std::size_t m_pieceStart = 0;
    std::byte* m_next = nullptr;
    std::byte* m_end = nullptr;
    /// The size of each polygon, and the number in each piece but the last; of use while there are no places.
    std::size_t m_polygonSize = 0;
    std::size_t m_polygonsPerPiece = kUnlimited;
    /// Where the polygons stand, once two are of different sizes.
    std::vector<std::byte*> m_places;
    /// The polygon that was begun: its place, and the end of its lists.
    std::byte* m_polygon = nullptr;
    std::byte* m_listsEnd = nullptr;
    std::uint32_t m_vertexCount = 0;
    std::uint32_t m_flags = 0;
    bool m_hasFirstNormals = false;
    bool m_sharesNormals = false;
};

}  // namespace KVR
