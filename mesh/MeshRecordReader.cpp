#include "mesh/MeshRecordReader.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "framework/api/Subscript.h"
#include "framework/xml_util/StoreCursor.h"

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

constexpr unsigned int kTwoDimensions = 2;
constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::uint64_t kSmallPolygon = 16;

std::uint64_t WordAt(unsigned char const* bytes)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

}  // namespace

MeshRecordReader::MeshRecordReader(StoreCursor& store, StoreMaterials materials, bool geometryInfoLayout,
                                   StoreMemory& memory, XMLPolygonMesh::Content& content)
    : m_store(store),
      m_materials(materials),
      m_geometryInfoLayout(geometryInfoLayout),
      m_memory(memory),
      m_content(content)
{
}

void MeshRecordReader::Read()
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
    m_content.vertices = ReadTriples<PolygonVertex>(m_store, vertexCount, m_memory, m_content.memory);
    m_content.normals = ReadTriples<Normal>(m_store, normalCount, m_memory, m_content.memory);
    ReadTextureVertices(textureCount);

    // A polygon takes eight bytes at the least, and behind the end of the file none has any effect.
    unsigned long long const mostPolygons = std::min(polygonCount, m_store.Remaining() / 8);
    m_content.polygons.emplace(m_memory, m_content.memory, static_cast<std::size_t>(mostPolygons), normalCount > 0,
                               textureCount > 0);
    for (unsigned long long i = 0; i < polygonCount && !m_store.HasEnded(); ++i)
        ReadPolygon(normalCount > 0, textureCount > 0);
    m_content.polygons->Finish();
}

void MeshRecordReader::ReadTextureVertices(unsigned long long count)
{
    if (m_geometryInfoLayout)
    {
        if (count > 0)
            ReadTextureVertexSet(kTwoDimensions, count);
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
            ReadTextureVertexSet(dimension, vertexCount);
    }
}

void MeshRecordReader::ReadTextureVertexSet(unsigned int dimension, unsigned long long count)
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
        m_content.textureVertexSets.push_back(std::move(set));
    }
    else
    {
        auto set = std::make_unique<TextureVertexSet3D>();
        set->Reserve(count);
        for (std::size_t i = 0; i < coordinates.size(); i += 3)
            set->AddVertex(MeshTextureVertex3D(coordinates[i], coordinates[i + 1], coordinates[i + 2]), false);
        m_content.textureVertexSets.push_back(std::move(set));
    }
}

// The common polygon, small and without textures, is taken from the buffer in one piece; false, with nothing consumed,
// for any other and for one at the end of the file.
bool MeshRecordReader::ReadSmallPolygon(bool mayHaveNormals)
{
    unsigned char const* bytes = m_store.Peek(kWord);
    if (!bytes)
        return false;
    std::uint64_t const vertexCount = WordAt(bytes);
    if (vertexCount == 0 || vertexCount > kSmallPolygon)
        return false;
    std::size_t const most = kWord + vertexCount * kWord + 1 + kWord + 1 + vertexCount * kWord;
    bytes = m_store.Peek(most);
    if (!bytes)
        return false;
    unsigned char const* const start = bytes;
    unsigned char const* const vertices = bytes + kWord;
    bytes = vertices + vertexCount * kWord;
    std::uint32_t slot = kNoMaterialSlot;
    if (*bytes++ != 0)
    {
        slot = SlotOf(WordAt(bytes));
        bytes += kWord;
    }
    unsigned char const* normals = nullptr;
    if (mayHaveNormals && *bytes++ != 0)
    {
        normals = bytes;
        bytes += vertexCount * kWord;
    }
    m_content.polygons->Add(static_cast<std::uint32_t>(vertexCount), vertices, normals, slot);
    m_store.Skip(static_cast<std::size_t>(bytes - start));
    return true;
}

void MeshRecordReader::ReadPolygon(bool mayHaveNormals, bool mayHaveTextures)
{
    if (!mayHaveTextures && ReadSmallPolygon(mayHaveNormals))
        return;
    unsigned long long stated = 0;
    m_store.Read(stated);
    if (stated == 0)
        return;
    m_store.Expect(stated, sizeof(unsigned long long), sizeof(std::int32_t));
    if (stated > PolygonSlab::kMostVertices)
        ThrowTooLong();
    auto const vertexCount = static_cast<std::uint32_t>(stated);
    PolygonSlab& polygons = *m_content.polygons;
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
        ReadTextures(vertexCount);
    polygons.End(slot);
}

std::uint32_t MeshRecordReader::ReadMaterialSlot()
{
    bool hasMaterial = false;
    unsigned long long material = 0;
    if (!m_store.Read(hasMaterial) || !hasMaterial)
        return kNoMaterialSlot;
    m_store.Read(material);
    return SlotOf(material);
}

std::uint32_t MeshRecordReader::SlotOf(unsigned long long material)
{
    // Polygons of one face come one behind the other and share their material.
    if (material == m_lastMaterial)
        return m_lastSlot;
    // An index that only the stated number reaches, and not the list, finds no id.
    if (material >= m_materials.count || material >= m_materials.table.size())
        return kNoMaterialSlot;
    auto const [place, isNew] = m_slots.try_emplace(material, static_cast<std::uint32_t>(m_slots.size()));
    if (isNew)
    {
        IdSet ids;
        ids.AddWithUniquenessCheck(m_materials.table[static_cast<std::size_t>(material)]);
        m_content.materialSets.AddWithUniquenessCheck(std::move(ids));
    }
    m_lastMaterial = material;
    m_lastSlot = place->second;
    return m_lastSlot;
}

void MeshRecordReader::ReadTextures(std::uint32_t vertexCount)
{
    m_textureSets.clear();
    m_textureIndices.clear();
    if (m_geometryInfoLayout)
    {
        m_store.Expect(vertexCount, sizeof(unsigned long long), sizeof(std::int32_t));
        m_textureSets.push_back(0);
        m_textureIndices.resize(vertexCount);
        m_store.ReadIndices(m_textureIndices.data(), vertexCount);
        m_content.polygons->SetTextures(m_textureSets, m_textureIndices);
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
    m_content.polygons->SetTextures(m_textureSets, m_textureIndices);
}

void MeshRecordReader::FillUp(std::vector<std::int32_t>& list, unsigned long long count)
{
    if (count > list.size())
        m_store.Claim(count - list.size(), sizeof(std::int32_t));
    list.resize(static_cast<std::size_t>(count));
}

}  // namespace KVR
