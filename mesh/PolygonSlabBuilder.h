#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/PolygonSlab.h"
#include "mesh/StoreMemory.h"

namespace KVR
{

/// Fills a slab, polygon by polygon.
class PolygonSlabBuilder
{
public:
    /// What the polygons of a mesh may be like.
    struct Limits
    {
        /// The most that can come.
        std::size_t polygons = 0;
        /// The slots of materials are below it.
        std::size_t slots = 0;
        bool mayHaveNormals = false;
        bool mayHaveTextures = false;
    };

    /// The slab and the memory have to be there while polygons come, the blocks as long as the slab.
    PolygonSlabBuilder(PolygonSlab& slab, StoreMemory& memory, StoreMemory::Blocks& blocks, Limits const& limits);
    PolygonSlabBuilder(PolygonSlabBuilder const&) = delete;
    PolygonSlabBuilder& operator=(PolygonSlabBuilder const&) = delete;

    /// Adds a polygon without textures in one step: its indices as a store has them, 64-bit numbers in the system's own
    /// byte order, and its normal indices, null for none.
    void Add(std::uint32_t vertexCount, unsigned char const* vertexIndices, unsigned char const* normalIndices,
             std::uint32_t materialSlot);

    /// How the polygon added last stands in a store: the number of its vertices, their indices, so many bytes that say
    /// what its material is and whether normals follow, and its normal indices, if any.
    struct Sample
    {
        unsigned char const* bytes;
        std::size_t size;
        std::uint32_t vertexCount;
        std::size_t middleSize;
        bool hasNormals;
    };

    /// Adds those that follow the sample as long as they are like it in all but indices, and as `available` bytes,
    /// those of the sample among them, and `most` allow. The number that were added, which may be less than possible.
    std::size_t AddLike(Sample const& sample, std::size_t available, std::size_t most);

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

private:
    void NewPiece(std::size_t needed);
    PolygonSlab::Table& Table();
    bool UsesPlaces() const noexcept { return m_slab.m_table && !m_slab.m_table->places.empty(); }
    void UsePlaces();
    bool MayShareNormals(bool isEqual) noexcept;

    PolygonSlab& m_slab;
    StoreMemory& m_memory;
    StoreMemory::Blocks& m_blocks;
    Limits m_limits;
    /// The index of the first polygon in the last piece, and the number that may stand in one.
    std::size_t m_pieceStart = 0;
    std::size_t m_polygonsPerPiece = PolygonSlab::kUnlimited;
    std::byte* m_next = nullptr;
    std::byte* m_end = nullptr;
    /// The polygon that was begun or added last: its place, and the end of its lists.
    std::byte* m_polygon = nullptr;
    std::byte* m_listsEnd = nullptr;
    std::uint32_t m_vertexCount = 0;
    std::uint32_t m_flags = 0;
    bool m_hasFirstNormals = false;
    bool m_sharesNormals = false;
};

}  // namespace KVR
