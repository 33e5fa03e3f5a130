#include "mesh/PolygonSlabBuilder.h"

#include <algorithm>
#include <new>
#include <utility>

#include "mesh/SlabPolygon.h"

namespace KVR
{

namespace
{
constexpr std::size_t kPieceSize = 8 * 1024 * 1024;
}  // namespace

PolygonSlabBuilder::PolygonSlabBuilder(PolygonSlab& slab, StoreMemory& memory, StoreMemory::Blocks& blocks,
                                       Limits const& limits)
    : m_slab(slab), m_memory(memory), m_blocks(blocks), m_limits(limits)
{
}

PolygonSlab::Table& PolygonSlabBuilder::Table()
{
    if (!m_slab.m_table)
        m_slab.m_table = std::make_unique<PolygonSlab::Table>();
    return *m_slab.m_table;
}

void PolygonSlabBuilder::NewPiece(std::size_t needed)
{
    std::size_t const count = m_slab.m_count;
    if (m_slab.m_firstPiece)
    {
        PolygonSlab::Table& table = Table();
        if (table.pieces.empty())
        {
            table.pieces.push_back(m_slab.m_firstPiece);
            m_polygonsPerPiece = table.polygonsPerPiece = table.places.empty() ? count : PolygonSlab::kUnlimited;
        }
        else if (count - m_pieceStart < m_polygonsPerPiece)
        {
            UsePlaces();
        }
    }
    m_pieceStart = count;
    // A small mesh gets a small piece: as many polygons like this one as are still to come.
    std::size_t const toCome = std::max<std::size_t>(m_limits.polygons > count ? m_limits.polygons - count : 0, 1);
    std::size_t const size = toCome < kPieceSize / needed ? needed * toCome : std::max(needed, kPieceSize);
    m_next = m_memory.Take(size, m_blocks);
    if (!m_slab.m_firstPiece)
        m_slab.m_firstPiece = m_next;
    else
        Table().pieces.push_back(m_next);
    m_end = m_next + size;
}

std::int32_t* PolygonSlabBuilder::Begin(std::uint32_t vertexCount)
{
    bool const isWide = vertexCount > kHeadVertices || m_limits.slots > kHeadSlots;
    std::size_t const listSize = vertexCount * sizeof(std::int32_t);
    std::size_t const lists = (m_limits.mayHaveNormals ? 2 : 1) * listSize;
    std::size_t const most = AlignedPolygon(SlabPolygon::kHeadEnd + (isWide ? SlabPolygon::kWideSize : 0) + lists) +
                             (m_limits.mayHaveTextures ? sizeof(void*) : 0);
    if (static_cast<std::size_t>(m_end - m_next) < most || m_slab.m_count - m_pieceStart == m_polygonsPerPiece)
        NewPiece(most);
    m_polygon = m_next;
    m_vertexCount = vertexCount;
    m_flags = 0;
    // The polygon comes first: what stood in the place of an object before it was made would be lost.
    auto const* const polygon = new (m_polygon) SlabPolygon(isWide ? 0 : vertexCount << kHeadVerticesAt);
    if (isWide)
        std::memcpy(m_polygon + SlabPolygon::kHeadEnd, &vertexCount, sizeof vertexCount);
    m_listsEnd = m_polygon + polygon->ListsAt() + listSize;
    return reinterpret_cast<std::int32_t*>(m_listsEnd - listSize);
}

void PolygonSlabBuilder::Add(std::uint32_t vertexCount, unsigned char const* vertexIndices,
                             unsigned char const* normalIndices, std::uint32_t materialSlot)
{
    auto const indexAt = [](unsigned char const* indices, std::uint32_t at)
    { return static_cast<std::int32_t>(LoadNumber<std::uint64_t>(indices + at * sizeof(std::uint64_t))); };
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

namespace
{

enum class Normals
{
    kNone,
    kShared,
    kOwn
};

constexpr std::size_t kWord = sizeof(std::uint64_t);
// What is compared of a polygon's middle: a material's flag and index, and the flag of normals.
constexpr std::size_t kMostMiddle = 1 + kWord + 1;

// The middle of a polygon in a store as two numbers, without what stands behind it.
struct Middle
{
    std::uint64_t word;
    std::uint16_t rest;

    Middle(unsigned char const* bytes, std::size_t size)
        : word(LoadNumber<std::uint64_t>(bytes)), rest(LoadNumber<std::uint16_t>(bytes + kWord))
    {
        if (size < kWord)
            word &= (std::uint64_t{1} << 8 * size) - 1;
        rest = size <= kWord ? 0 : static_cast<std::uint16_t>(rest & (size == kMostMiddle ? 0xFFFF : 0xFF));
    }
};

// Where polygons that are like one that was made go.
struct LikePlaces
{
    std::byte* next;
    std::size_t size;
    std::size_t most;
    std::uint32_t head;
};

// The loop in which large meshes spend their time: triangle by triangle with nothing but loads, comparisons and stores,
// and no call. What is the same in all polygons of a run was found out from the one before it. Answers the number that
// were made.
template <std::uint32_t kVertices, Normals kNormals>
std::size_t CopyLike(PolygonSlabBuilder::Sample const& sample, std::size_t available, LikePlaces to)
{
    constexpr std::size_t kMiddleAt = kWord + kVertices * kWord;
    std::size_t const stride = sample.size;
    std::size_t const middleSize = sample.middleSize;
    Middle const middle(sample.bytes + kMiddleAt, middleSize);
    // A middle is read whole, also where it is short.
    std::size_t const held = available < kMostMiddle ? 0 : (available - kMostMiddle) / stride;
    std::size_t const most = std::min(held > 0 ? held - 1 : 0, to.most);
    unsigned char const* bytes = sample.bytes + stride;
    for (std::size_t made = 0; made < most; ++made)
    {
        Middle const other(bytes + kMiddleAt, middleSize);
        if (LoadNumber<std::uint64_t>(bytes) != kVertices || other.word != middle.word || other.rest != middle.rest)
            return made;
        std::uint32_t vertices[kVertices];
        for (std::uint32_t i = 0; i < kVertices; ++i)
            vertices[i] = LoadNumber<std::uint32_t>(bytes + kWord + i * kWord);
        std::uint32_t normals[kVertices] = {};
        std::uint32_t difference = 0;
        for (std::uint32_t i = 0; kNormals != Normals::kNone && i < kVertices; ++i)
        {
            normals[i] = LoadNumber<std::uint32_t>(bytes + kMiddleAt + middleSize + i * kWord);
            difference |= normals[i] ^ vertices[i];
        }
        // Whether one list stands for both is the same in the whole run, too.
        if (kNormals != Normals::kNone && (difference == 0) != (kNormals == Normals::kShared))
            return made;
        new (to.next) SlabPolygon(to.head);
        std::memcpy(to.next + SlabPolygon::kHeadEnd, vertices, sizeof vertices);
        if (kNormals == Normals::kOwn)
            std::memcpy(to.next + SlabPolygon::kHeadEnd + sizeof vertices, normals, sizeof normals);
        to.next += to.size;
        bytes += stride;
    }
    return most;
}

template <std::uint32_t kVertices>
std::size_t CopyLike(PolygonSlabBuilder::Sample const& sample, std::size_t available, LikePlaces const& to)
{
    if (!sample.hasNormals)
        return CopyLike<kVertices, Normals::kNone>(sample, available, to);
    if ((to.head & kPolygon_SharesNormals) != 0)
        return CopyLike<kVertices, Normals::kShared>(sample, available, to);
    return CopyLike<kVertices, Normals::kOwn>(sample, available, to);
}

}  // namespace

std::size_t PolygonSlabBuilder::AddLike(Sample const& sample, std::size_t available, std::size_t most)
{
    auto const* const last = reinterpret_cast<SlabPolygon const*>(m_polygon);
    if (sample.vertexCount < 3 || sample.vertexCount > 4 || last->IsWide())
        return 0;
    auto const size = static_cast<std::size_t>(m_next - m_polygon);
    std::size_t const fit =
        std::min(static_cast<std::size_t>(m_end - m_next) / size, m_polygonsPerPiece - (m_slab.m_count - m_pieceStart));
    LikePlaces const to{m_next, size, std::min(most, fit), last->Head()};
    std::size_t const made =
        sample.vertexCount == 3 ? CopyLike<3>(sample, available, to) : CopyLike<4>(sample, available, to);
    for (std::size_t i = 0; UsesPlaces() && i < made; ++i)
        m_slab.m_table->places.push_back(m_next + i * size);
    m_next += made * size;
    m_slab.m_count += made;
    return made;
}

// Whether one list stands for both in the polygon that was begun. Polygons that share now and then would differ in size
// for little, so the first one with normals decides whether any does.
bool PolygonSlabBuilder::MayShareNormals(bool isEqual) noexcept
{
    if (!m_hasFirstNormals)
        m_sharesNormals = isEqual;
    m_hasFirstNormals = true;
    return isEqual && m_sharesNormals;
}

std::int32_t* PolygonSlabBuilder::AddNormals()
{
    auto* const place = reinterpret_cast<std::int32_t*>(m_listsEnd);
    m_flags |= kPolygon_HasNormals;
    m_listsEnd += m_vertexCount * sizeof(std::int32_t);
    return place;
}

void PolygonSlabBuilder::EndNormals()
{
    std::size_t const listSize = m_vertexCount * sizeof(std::int32_t);
    std::byte const* const lists = m_polygon + reinterpret_cast<SlabPolygon const*>(m_polygon)->ListsAt();
    if (!MayShareNormals(std::memcmp(lists, lists + listSize, listSize) == 0))
        return;
    m_flags = kPolygon_SharesNormals;
    m_listsEnd -= listSize;
}

void PolygonSlabBuilder::SetTextures(std::vector<std::int32_t> const& setIndices,
                                     std::vector<std::int32_t> const& vertexIndices)
{
    std::size_t const count = 2 + setIndices.size() + vertexIndices.size();
    auto* const lists = reinterpret_cast<std::int32_t*>(m_memory.Take(count * sizeof(std::int32_t), m_blocks));
    std::byte* const place = m_polygon + AlignedPolygon(static_cast<std::size_t>(m_listsEnd - m_polygon));
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
void PolygonSlabBuilder::UsePlaces()
{
    if (UsesPlaces())
        return;
    std::vector<std::byte*> places;
    places.reserve(m_slab.m_count + 1);
    for (std::size_t i = 0; i < m_slab.m_count; ++i)
        places.push_back(reinterpret_cast<std::byte*>(m_slab.PolygonPlace(i)));
    Table().places = std::move(places);
    m_polygonsPerPiece = PolygonSlab::kUnlimited;
}

void PolygonSlabBuilder::End(std::uint32_t materialSlot)
{
    std::size_t const size = AlignedPolygon(static_cast<std::size_t>(m_listsEnd - m_polygon));
    if (m_slab.m_count == 0)
        m_slab.m_polygonSize = size;
    else if (size != m_slab.m_polygonSize)
        UsePlaces();
    if (UsesPlaces())
        m_slab.m_table->places.push_back(m_polygon);
    reinterpret_cast<SlabPolygon*>(m_polygon)->SetRest(m_flags, materialSlot);
    m_next = m_polygon + size;
    ++m_slab.m_count;
}

void PolygonSlabBuilder::Finish() noexcept
{
    m_memory.GiveBack(m_next, m_end);
    m_end = m_next;
}

}  // namespace KVR
