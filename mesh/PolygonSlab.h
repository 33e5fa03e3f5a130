#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "framework/api/Polygon.h"

namespace KVR
{

/// The polygons of one mesh. They stand side by side, and so do their index lists: a polygon costs no allocation of its
/// own, and all of them are freed at once.
class PolygonSlab
{
public:
    /// `expectedCount` is the most polygons that can come; polygons have normals or textures only if the flag is set.
    PolygonSlab(std::size_t expectedCount, bool mayHaveNormals, bool mayHaveTextures);
    ~PolygonSlab();
    PolygonSlab(PolygonSlab const&) = delete;
    PolygonSlab& operator=(PolygonSlab const&) = delete;

    /// Begins a polygon for so many vertices, above 0: the place for its vertex indices, which the caller fills.
    std::int32_t* Begin(std::uint32_t vertexCount);
    /// The place for the normal indices of the polygon that was begun.
    std::int32_t* AddNormals();
    /// Copies the texture lists of the polygon that was begun.
    void SetTextures(std::vector<std::int32_t> const& setIndices, std::vector<std::int32_t> const& vertexIndices);
    /// Ends the polygon that was begun.
    void End(std::uint32_t materialSlot);

    std::size_t Count() const noexcept { return m_count; }
    EditablePolygon const* At(std::size_t index) const noexcept;
    std::uint32_t MaterialSlotAt(std::size_t index) const noexcept;

private:
    class SlabPolygon;

    /// Eight megabytes of polygons, or a little less.
    static constexpr std::size_t kPolygonsPerChunk = 349504;

    SlabPolygon* PolygonPlace(std::size_t index) const noexcept;
    std::int32_t* TakeIndices(std::size_t count);

    struct FreeChunk
    {
        void operator()(void* chunk) const noexcept;
    };

    std::size_t m_expectedCount;
    std::size_t m_listsPerRun;
    std::size_t m_wordsPerPointer;
    std::size_t m_count = 0;
    /// Chunks of polygons, full but for the last.
    std::vector<std::unique_ptr<void, FreeChunk>> m_polygons;
    /// Blocks of index runs. A run is its flags, the vertex indices, and what the flags say follows.
    std::vector<std::unique_ptr<std::int32_t[]>> m_blocks;
    std::int32_t* m_next = nullptr;
    std::int32_t* m_end = nullptr;
    /// The polygon that was begun.
    std::int32_t* m_run = nullptr;
    std::uint32_t m_runVertexCount = 0;
};

}  // namespace KVR
