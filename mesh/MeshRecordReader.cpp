#include "mesh/MeshRecordReader.h"

#include <algorithm>
#include <span>
#include <utility>

#include "framework/api/Subscript.h"
#include "framework/xml_util/StoreCursor.h"
#include "mesh/SlabPolygon.h"

namespace KVR
{

namespace
{

// Reads a list of three doubles each, with zeros for what the file does not hold.
template <class Item>
std::span<Item const> ReadTriples(StoreCursor& store, unsigned long long count, StoreMemory& memory,
                                  StoreMemory::Blocks& blocks)
{
    static_assert(sizeof(Item) == 3 * sizeof(double));
    store.Expect(count, sizeof(Item), sizeof(Item));
    if (count == 0)
        return {};
    auto const itemCount = static_cast<std::size_t>(count);
    std::byte* const bytes = memory.Take(itemCount * sizeof(Item), blocks);
    auto* const numbers = reinterpret_cast<double*>(bytes);
    std::size_t const read = store.ReadDoubles(numbers, 3 * itemCount);
    std::fill(numbers + read, numbers + 3 * itemCount, 0.0);
    return {reinterpret_cast<Item const*>(bytes), itemCount};
}

void Append(XMLPolygonMesh::Content& content, std::unique_ptr<ITextureVertexSet> set)
{
    if (!content.textureVertexSets)
        content.textureVertexSets = std::make_unique<XMLPolygonMesh::TextureVertexSets>();
    content.textureVertexSets->push_back(std::move(set));
}

constexpr unsigned int kTwoDimensions = 2;
constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::uint64_t kSmallPolygon = 16;

}  // namespace

MeshRecordReader::MeshRecordReader(StoreCursor& store, StoreMaterials materials, bool geometryInfoLayout,
                                   StoreMemory& memory)
    : m_store(store), m_slots(std::move(materials)), m_geometryInfoLayout(geometryInfoLayout), m_memory(memory)
{
}

void MeshRecordReader::Read(Content& content)
{
    unsigned long long vertexCount = 0;
    unsigned long long normalCount = 0;
    unsigned long long polygonCount = 0;
    unsigned long long reserved = 0;
    unsigned long long textureCount = 0;
    m_store.Read(vertexCount);
    m_store.Read(normalCount);
    m_store.Read(polygonCount);
    m_store.Read(reserved);
    m_store.Read(textureCount);
    content.vertices = ReadTriples<PolygonVertex>(m_store, vertexCount, m_memory, content.memory);
    content.normals = ReadTriples<Normal>(m_store, normalCount, m_memory, content.memory);
    ReadTextureVertices(textureCount, content);

    PolygonSlabBuilder::Limits limits;
    // A polygon takes eight bytes at the least, and behind the end of the file none has any effect.
    limits.polygons = static_cast<std::size_t>(std::min(polygonCount, m_store.Remaining() / kWord));
    limits.slots = m_slots.Most();
    limits.mayHaveNormals = normalCount > 0;
    limits.mayHaveTextures = textureCount > 0;
    m_slots.BeginMesh();
    PolygonSlabBuilder polygons(content.polygons, m_memory, content.memory, limits);
    for (unsigned long long i = 0; i < polygonCount && !m_store.HasEnded();)
    {
        if (!limits.mayHaveTextures)
        {
            unsigned long long const read = ReadSmallPolygons(polygons, polygonCount - i, limits.mayHaveNormals);
            i += read;
            if (read > 0)
                continue;
        }
        ReadPolygon(polygons, limits.mayHaveNormals, limits.mayHaveTextures);
        ++i;
    }
    polygons.Finish();
    if (std::vector<std::uint32_t> const& used = m_slots.Used(); !used.empty())
    {
        auto* const places =
            reinterpret_cast<std::uint32_t*>(m_memory.Take(used.size() * sizeof(std::uint32_t), content.memory));
        std::copy(used.begin(), used.end(), places);
        content.materials = {places, used.size()};
        content.materialIds = m_slots.Materials().table;
    }
}

void MeshRecordReader::ReadTextureVertices(unsigned long long count, Content& content)
{
    if (m_geometryInfoLayout)
    {
        if (count > 0)
            ReadTextureVertexSet(kTwoDimensions, count, content);
        return;
    }
    for (unsigned long long i = 0; i < count && !m_store.HasEnded(); ++i)
    {
        unsigned int dimension = kTwoDimensions;
        unsigned long long vertexCount = 0;
        m_store.Read(dimension);
        m_store.Read(vertexCount);
        // Kept: a set without vertices vanishes, and polygons go on counting it.
        if (vertexCount > 0)
            ReadTextureVertexSet(dimension, vertexCount, content);
    }
}

void MeshRecordReader::ReadTextureVertexSet(unsigned int dimension, unsigned long long count, Content& content)
{
    // Any dimension but 2 is written with three coordinates.
    std::size_t const coordinateCount = dimension == kTwoDimensions ? 2 : 3;
    std::size_t const bytes = coordinateCount * sizeof(double);
    m_store.Expect(count, bytes, bytes);
    std::vector<double> coordinates(static_cast<std::size_t>(count) * coordinateCount);
    m_store.ReadDoubles(coordinates.data(), coordinates.size());
    if (coordinateCount == 2)
    {
        auto set = std::make_unique<TextureVertexSet2D>();
        set->Reserve(count);
        for (std::size_t i = 0; i < coordinates.size(); i += 2)
            set->AddVertex(MeshTextureVertex2D(coordinates[i], coordinates[i + 1]), false);
        Append(content, std::move(set));
    }
    else
    {
        auto set = std::make_unique<TextureVertexSet3D>();
        set->Reserve(count);
        for (std::size_t i = 0; i < coordinates.size(); i += 3)
            set->AddVertex(MeshTextureVertex3D(coordinates[i], coordinates[i + 1], coordinates[i + 2]), false);
        Append(content, std::move(set));
    }
}

// Common polygons, small and without textures, are taken from the buffer in one piece: one, and those behind it that
// are like it. The number that were read; 0, with nothing consumed, for any other and for one at the end of the file.
unsigned long long MeshRecordReader::ReadSmallPolygons(PolygonSlabBuilder& polygons, unsigned long long most,
                                                       bool mayHaveNormals)
{
    unsigned char const* bytes = m_store.Peek(kWord);
    if (!bytes)
        return 0;
    auto const vertexCount = LoadNumber<std::uint64_t>(bytes);
    if (vertexCount == 0 || vertexCount > kSmallPolygon)
        return 0;
    bytes = m_store.Peek(kWord + vertexCount * kWord + 1 + kWord + 1 + vertexCount * kWord);
    if (!bytes)
        return 0;
    unsigned char const* const start = bytes;
    unsigned char const* const vertices = bytes + kWord;
    unsigned char const* const middle = vertices + vertexCount * kWord;
    bytes = middle;
    std::uint32_t slot = kNoMaterialSlot;
    if (*bytes++ != 0)
    {
        slot = m_slots.SlotOf(LoadNumber<std::uint64_t>(bytes));
        bytes += kWord;
    }
    unsigned char const* normals = nullptr;
    if (mayHaveNormals && *bytes++ != 0)
    {
        normals = bytes;
        bytes += vertexCount * kWord;
    }
    PolygonSlabBuilder::Sample sample{};
    sample.bytes = start;
    sample.size = static_cast<std::size_t>(bytes - start);
    sample.vertexCount = static_cast<std::uint32_t>(vertexCount);
    sample.middleSize = static_cast<std::size_t>((normals ? normals : bytes) - middle);
    sample.hasNormals = normals != nullptr;
    polygons.Add(sample.vertexCount, vertices, normals, slot);
    auto const rest = static_cast<std::size_t>(std::min<unsigned long long>(most - 1, m_store.Peeked()));
    std::size_t const like = polygons.AddLike(sample, m_store.Peeked(), rest);
    m_store.Skip(sample.size * (1 + like));
    return 1 + like;
}

void MeshRecordReader::ReadPolygon(PolygonSlabBuilder& polygons, bool mayHaveNormals, bool mayHaveTextures)
{
    unsigned long long stated = 0;
    m_store.Read(stated);
    if (stated == 0)
        return;
    m_store.Expect(stated, sizeof(unsigned long long), sizeof(std::int32_t));
    if (stated > PolygonSlab::kMostVertices)
        ThrowTooLong();
    auto const vertexCount = static_cast<std::uint32_t>(stated);
    auto const readList = [&](std::int32_t* place)
    {
        std::size_t const read = m_store.ReadIndices(place, vertexCount);
        std::fill(place + read, place + vertexCount, 0);
    };
    readList(polygons.Begin(vertexCount));
    std::uint32_t const slot = ReadMaterialSlot();
    bool hasNormals = false;
    if (mayHaveNormals && m_store.Read(hasNormals) && hasNormals)
    {
        readList(polygons.AddNormals());
        polygons.EndNormals();
    }
    bool hasTextures = false;
    if (mayHaveTextures && m_store.Read(hasTextures) && hasTextures)
        ReadTextures(polygons, vertexCount);
    polygons.End(slot);
}

std::uint32_t MeshRecordReader::ReadMaterialSlot()
{
    bool hasMaterial = false;
    unsigned long long material = 0;
    if (!m_store.Read(hasMaterial) || !hasMaterial)
        return kNoMaterialSlot;
    m_store.Read(material);
    return m_slots.SlotOf(material);
}

void MeshRecordReader::ReadTextures(PolygonSlabBuilder& polygons, std::uint32_t vertexCount)
{
    m_textureSets.clear();
    m_textureIndices.clear();
    if (m_geometryInfoLayout)
    {
        m_store.Expect(vertexCount, sizeof(unsigned long long), sizeof(std::int32_t));
        m_textureSets.push_back(0);
        m_textureIndices.resize(vertexCount);
        m_store.ReadIndices(m_textureIndices.data(), vertexCount);
        polygons.SetTextures(m_textureSets, m_textureIndices);
        return;
    }
    unsigned int setCount = 0;
    for (std::uint32_t vertex = 0; vertex < vertexCount; ++vertex)
    {
        setCount = 0;
        // Behind the end of the file every vertex has no sets, the last one too.
        if (!m_store.Read(setCount))
            break;
        for (unsigned int i = 0; i < setCount && !m_store.HasEnded(); ++i)
        {
            unsigned long long set = 0;
            unsigned long long index = 0;
            m_store.Read(set);
            m_store.Read(index);
            // Kept: the sets of the first vertex stand for all.
            if (vertex == 0)
                m_textureSets.push_back(static_cast<std::int32_t>(set));
            m_textureIndices.push_back(static_cast<std::int32_t>(index));
        }
    }
    // Kept: the number of sets is that of the last vertex, whatever the others had; what the lists lack is 0.
    FillUp(m_textureSets, setCount);
    FillUp(m_textureIndices, static_cast<unsigned long long>(setCount) * vertexCount);
    polygons.SetTextures(m_textureSets, m_textureIndices);
}

void MeshRecordReader::FillUp(std::vector<std::int32_t>& list, unsigned long long count)
{
    if (count > list.size())
        m_store.Claim(count - list.size(), sizeof(std::int32_t));
    list.resize(static_cast<std::size_t>(count));
}

}  // namespace KVR
