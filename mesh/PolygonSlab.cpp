#include "mesh/PolygonSlab.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "framework/api/Exception.h"
#include "framework/api/Subscript.h"

namespace KVR
{

namespace
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

constexpr std::size_t kPieceSize = 8 * 1024 * 1024;
constexpr std::size_t kAlignment = alignof(void*);

std::size_t Aligned(std::size_t size)
{
    return (size + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace

// A polygon whose lists stand behind it. Its memory is the store's: releasing one has no effect, and no destructor
// runs.
class PolygonSlab::SlabPolygon final : public EditablePolygon
{
public:
    SlabPolygon(std::uint32_t vertexCountAndFlags, std::uint32_t slot) noexcept
        : m_vertexCountAndFlags(vertexCountAndFlags), m_materialSlot(slot)
    {
    }

    void Release() noexcept override {}
    int VertexCount() const noexcept override { return static_cast<int>(m_vertexCountAndFlags & kMostVertices); }
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
    std::uint32_t MaterialSlot() const noexcept { return m_materialSlot; }

private:
    [[noreturn]] static void Refuse() { throw GeneralException("The polygons of a mesh cannot be changed."); }

    bool Has(PolygonFlags flag) const noexcept { return (m_vertexCountAndFlags & flag) != 0; }

    std::int32_t const* Lists() const noexcept { return reinterpret_cast<std::int32_t const*>(this + 1); }

    std::int32_t const* Textures() const noexcept
    {
        if (!Has(kPolygon_HasTextures))
            return nullptr;
        std::size_t const lists = Has(kPolygon_HasNormals) ? 2 : 1;
        std::size_t const size = Aligned(lists * static_cast<std::size_t>(VertexCount()) * sizeof(std::int32_t));
        std::int32_t const* textures = nullptr;
        std::memcpy(&textures, reinterpret_cast<std::byte const*>(Lists()) + size, sizeof textures);
        return textures;
    }

    std::uint32_t m_vertexCountAndFlags;
    std::uint32_t m_materialSlot;
};

PolygonSlab::PolygonSlab(StoreMemory& memory, StoreMemory::Blocks& blocks, std::size_t mostPolygons,
                         bool mayHaveNormals, bool mayHaveTextures)
    : m_memory(memory),
      m_blocks(blocks),
      m_mostPolygons(mostPolygons),
      m_listsPerPolygon(mayHaveNormals ? 2 : 1),
      m_bytesForTextures(mayHaveTextures ? sizeof(void*) : 0)
{
}

void PolygonSlab::NewPiece(std::size_t needed)
{
    if (m_pieces.size() == 1)
        m_polygonsPerPiece = m_count;
    else if (m_count - m_pieceStart < m_polygonsPerPiece)
        UsePlaces();
    m_pieceStart = m_count;
    // A small mesh gets a small piece: as many polygons like this one as are still to come.
    std::size_t const toCome = std::max<std::size_t>(m_mostPolygons > m_count ? m_mostPolygons - m_count : 0, 1);
    std::size_t const size = toCome < kPieceSize / needed ? needed * toCome : std::max(needed, kPieceSize);
    m_next = m_memory.Take(size, m_blocks);
    m_pieces.push_back(m_next);
    m_end = m_next + size;
}

std::int32_t* PolygonSlab::Begin(std::uint32_t vertexCount)
{
    std::size_t const listSize = vertexCount * sizeof(std::int32_t);
    std::size_t const most = sizeof(SlabPolygon) + Aligned(m_listsPerPolygon * listSize) + m_bytesForTextures;
    if (static_cast<std::size_t>(m_end - m_next) < most || m_count - m_pieceStart == m_polygonsPerPiece)
        NewPiece(most);
    m_polygon = m_next;
    m_vertexCount = vertexCount;
    m_flags = 0;
    m_listsEnd = m_polygon + sizeof(SlabPolygon) + listSize;
    return reinterpret_cast<std::int32_t*>(m_polygon + sizeof(SlabPolygon));
}

void PolygonSlab::Add(std::uint32_t vertexCount, unsigned char const* vertexIndices, unsigned char const* normalIndices,
                      std::uint32_t materialSlot)
{
    auto const indexAt = [](unsigned char const* indices, std::uint32_t at)
    {
        std::uint64_t index = 0;
        std::memcpy(&index, indices + at * sizeof index, sizeof index);
        return static_cast<std::int32_t>(index);
    };
    std::int32_t* place = Begin(vertexCount);
    std::int32_t difference = 0;
    for (std::uint32_t i = 0; i < vertexCount; ++i)
    {
        *place = indexAt(vertexIndices, i);
        if (normalIndices)
            difference |= *place ^ indexAt(normalIndices, i);
        ++place;
    }
    if (normalIndices && MayShareNormals(difference == 0))
    {
        m_flags = kPolygon_SharesNormals;
    }
    else if (normalIndices)
    {
        place = AddNormals();
        for (std::uint32_t i = 0; i < vertexCount; ++i)
            *place++ = indexAt(normalIndices, i);
    }
    End(materialSlot);
}

// Whether one list stands for both in the polygon that was begun. Polygons that share now and then would differ in size
// for little, so the first one with normals decides whether any does.
bool PolygonSlab::MayShareNormals(bool isEqual) noexcept
{
    if (!m_hasFirstNormals)
        m_sharesNormals = isEqual;
    m_hasFirstNormals = true;
    return isEqual && m_sharesNormals;
}

std::int32_t* PolygonSlab::AddNormals()
{
    auto* const place = reinterpret_cast<std::int32_t*>(m_listsEnd);
    m_flags |= kPolygon_HasNormals;
    m_listsEnd += m_vertexCount * sizeof(std::int32_t);
    return place;
}

void PolygonSlab::EndNormals()
{
    std::size_t const listSize = m_vertexCount * sizeof(std::int32_t);
    std::byte const* const lists = m_polygon + sizeof(SlabPolygon);
    if (!MayShareNormals(std::memcmp(lists, lists + listSize, listSize) == 0))
        return;
    m_flags = kPolygon_SharesNormals;
    m_listsEnd -= listSize;
}

void PolygonSlab::SetTextures(std::vector<std::int32_t> const& setIndices,
                              std::vector<std::int32_t> const& vertexIndices)
{
    std::size_t const count = 2 + setIndices.size() + vertexIndices.size();
    auto* const lists = reinterpret_cast<std::int32_t*>(m_memory.Take(count * sizeof(std::int32_t), m_blocks));
    std::byte* const place = m_polygon + Aligned(static_cast<std::size_t>(m_listsEnd - m_polygon));
    std::memcpy(place, &lists, sizeof lists);
    m_listsEnd = place + sizeof lists;
    m_flags |= kPolygon_HasTextures;
    std::int32_t* out = lists;
    *out++ = static_cast<std::int32_t>(setIndices.size());
    out = std::copy(setIndices.begin(), setIndices.end(), out);
    *out++ = static_cast<std::int32_t>(vertexIndices.size());
    std::copy(vertexIndices.begin(), vertexIndices.end(), out);
}

// From here on the places are listed; until now each followed from its index.
void PolygonSlab::UsePlaces()
{
    if (!m_places.empty())
        return;
    std::vector<std::byte*> places;
    places.reserve(m_count + 1);
    for (std::size_t i = 0; i < m_count; ++i)
        places.push_back(reinterpret_cast<std::byte*>(PolygonPlace(i)));
    m_places = std::move(places);
    m_polygonsPerPiece = kUnlimited;
}

void PolygonSlab::End(std::uint32_t materialSlot)
{
    std::size_t const size = Aligned(static_cast<std::size_t>(m_listsEnd - m_polygon));
    if (m_count == 0)
        m_polygonSize = size;
    else if (size != m_polygonSize)
        UsePlaces();
    if (!m_places.empty())
        m_places.push_back(m_polygon);
    new (m_polygon) SlabPolygon(m_vertexCount | m_flags, materialSlot);
    m_next = m_polygon + size;
    ++m_count;
}

void PolygonSlab::Finish() noexcept
{
    m_memory.GiveBack(m_next, m_end);
    m_end = m_next;
}

PolygonSlab::SlabPolygon* PolygonSlab::PolygonPlace(std::size_t index) const noexcept
{
    std::byte* const place = m_places.empty()
                                 ? m_pieces[index / m_polygonsPerPiece] + index % m_polygonsPerPiece * m_polygonSize
                                 : m_places[index];
    return reinterpret_cast<SlabPolygon*>(place);
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
