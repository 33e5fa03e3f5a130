#include "mesh/PolygonSlab.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "framework/api/Subscript.h"
#include "mesh/LargePages.h"

namespace KVR
{

namespace
{

enum RunFlags : std::int32_t
{
    kRun_HasNormals = 1,
    /// Behind vertex and normal indices stands a pointer to the texture lists: the number of sets, the sets, and the
    /// number of vertex indices, and those.
    kRun_HasTextures = 2
};

constexpr std::size_t kPointerWords = sizeof(void*) / 4;
// Eight megabytes of indices.
constexpr std::size_t kLargestBlock = 2 * 1024 * 1024;

}  // namespace

// A polygon whose lists stand in its mesh's slab. Its memory is the slab's: releasing one has no effect, and no
// destructor runs.
class PolygonSlab::SlabPolygon final : public EditablePolygon
{
public:
    SlabPolygon(std::int32_t* run, std::uint32_t vertexCount, std::uint32_t slot) noexcept
        : m_run(run), m_vertexCount(vertexCount), m_materialSlot(slot)
    {
    }

    void Release() noexcept override {}
    int VertexCount() const noexcept override { return static_cast<int>(m_vertexCount); }
    // A polygon of a mesh keeps the lengths of its lists.
    void SetVertexIndices(int count, int const* indices) override { Replace(VertexIndices(), count, indices); }
    void SetNormalIndices(int count, int const* indices) override { Replace(NormalIndices(), count, indices); }
    void SetTextureVertexIndices(int, int setIndexCount, int const* setIndices, int indexCount,
                                 int const* indices) override
    {
        Replace(TextureSetIndices(), setIndexCount, setIndices);
        Replace(TextureVertexIndices(), indexCount, indices);
    }

    IndexList VertexIndices() const noexcept override { return {m_run + 1, VertexCount()}; }
    IndexList NormalIndices() const noexcept override
    {
        if ((m_run[0] & kRun_HasNormals) == 0)
            return {};
        return {m_run + 1 + m_vertexCount, VertexCount()};
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
    std::uint32_t MaterialSlot() const noexcept { return m_materialSlot; }

private:
    std::int32_t const* Textures() const noexcept
    {
        if ((m_run[0] & kRun_HasTextures) == 0)
            return nullptr;
        std::size_t const lists = (m_run[0] & kRun_HasNormals) != 0 ? 2 : 1;
        std::int32_t const* textures = nullptr;
        std::memcpy(&textures, m_run + 1 + lists * m_vertexCount, sizeof textures);
        return textures;
    }

    static void Replace(IndexList const& held, int count, int const* indices)
    {
        if (count != held.count)
            ThrowTooLong();
        if (count > 0)
            std::memcpy(const_cast<int*>(held.data), indices, static_cast<std::size_t>(count) * sizeof(int));
    }

    std::int32_t* m_run;
    std::uint32_t m_vertexCount;
    std::uint32_t m_materialSlot;
};

void PolygonSlab::FreeChunk::operator()(void* chunk) const noexcept
{
    ::operator delete(chunk);
}

PolygonSlab::PolygonSlab(std::size_t expectedCount, bool mayHaveNormals, bool mayHaveTextures)
    : m_expectedCount(expectedCount),
      m_listsPerRun(mayHaveNormals ? 2 : 1),
      m_wordsPerPointer(mayHaveTextures ? kPointerWords : 0)
{
}

PolygonSlab::~PolygonSlab() = default;

std::int32_t* PolygonSlab::TakeIndices(std::size_t count)
{
    if (static_cast<std::size_t>(m_end - m_next) < count)
    {
        // A small mesh gets a small block: as many runs like this one as polygons are still to come.
        std::size_t const toCome = m_expectedCount > m_count ? m_expectedCount - m_count : 1;
        std::size_t const size = std::max(count, std::min(kLargestBlock, count * std::min(toCome, kLargestBlock)));
        m_blocks.emplace_back(new std::int32_t[size]);
        m_next = m_blocks.back().get();
        AdviseLargePages(m_next, size * sizeof(std::int32_t));
        m_end = m_next + size;
    }
    std::int32_t* const taken = m_next;
    m_next += count;
    return taken;
}

std::int32_t* PolygonSlab::Begin(std::uint32_t vertexCount)
{
    m_run = TakeIndices(1 + m_listsPerRun * vertexCount + m_wordsPerPointer);
    // Of the place taken only what the run turns out to need is kept.
    m_next = m_run + 1 + vertexCount;
    m_run[0] = 0;
    m_runVertexCount = vertexCount;
    return m_run + 1;
}

std::int32_t* PolygonSlab::AddNormals()
{
    m_run[0] |= kRun_HasNormals;
    m_next += m_runVertexCount;
    return m_next - m_runVertexCount;
}

void PolygonSlab::SetTextures(std::vector<std::int32_t> const& setIndices,
                              std::vector<std::int32_t> const& vertexIndices)
{
    std::int32_t* const place = m_next;
    m_next += kPointerWords;
    std::int32_t* const lists = TakeIndices(2 + setIndices.size() + vertexIndices.size());
    std::memcpy(place, &lists, sizeof lists);
    m_run[0] |= kRun_HasTextures;
    std::int32_t* out = lists;
    *out++ = static_cast<std::int32_t>(setIndices.size());
    out = std::copy(setIndices.begin(), setIndices.end(), out);
    *out++ = static_cast<std::int32_t>(vertexIndices.size());
    std::copy(vertexIndices.begin(), vertexIndices.end(), out);
}

void PolygonSlab::End(std::uint32_t materialSlot)
{
    if (m_count % kPolygonsPerChunk == 0)
    {
        std::size_t const toCome = m_expectedCount > m_count ? m_expectedCount - m_count : kPolygonsPerChunk;
        std::size_t const size = std::min(toCome, kPolygonsPerChunk) * sizeof(SlabPolygon);
        m_polygons.emplace_back(::operator new(size));
        AdviseLargePages(m_polygons.back().get(), size);
    }
    new (PolygonPlace(m_count)) SlabPolygon(m_run, m_runVertexCount, materialSlot);
    ++m_count;
}

PolygonSlab::SlabPolygon* PolygonSlab::PolygonPlace(std::size_t index) const noexcept
{
    auto* const chunk = static_cast<SlabPolygon*>(m_polygons[index / kPolygonsPerChunk].get());
    return chunk + index % kPolygonsPerChunk;
}

EditablePolygon const* PolygonSlab::At(std::size_t index) const noexcept
{
    return PolygonPlace(index);
}
std::uint32_t PolygonSlab::MaterialSlotAt(std::size_t index) const noexcept
{
    return PolygonPlace(index)->MaterialSlot();
}

}  // namespace KVR
