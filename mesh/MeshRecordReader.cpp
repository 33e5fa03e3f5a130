#include "mesh/MeshRecordReader.h"

#include <algorithm>
#include <cstring>

#include "framework/api/Subscript.h"
#include "framework/xml_util/StoreCursor.h"
#include "mesh/LargePages.h"

namespace KVR
{

namespace
{

// Reads a list of three doubles each, with zeros for what the file does not hold.
template <class Item>
void ReadTriples(StoreCursor& store, unsigned long long count, std::vector<Item>& items)
{
    static_assert(sizeof(Item) == 3 * sizeof(double));
    store.Expect(count, sizeof(Item), sizeof(Item));
    items.reserve(static_cast<std::size_t>(count));
    AdviseLargePages(items.data(), items.capacity() * sizeof(Item));
    items.resize(static_cast<std::size_t>(count));
    store.ReadDoubles(reinterpret_cast<double*>(items.data()), 3 * items.size());
}

constexpr unsigned int kTwoDimensions = 2;
constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::uint64_t kSmallPolygon = 16;
// Index lists are counted by int.
constexpr unsigned long long kMostVertices = 0x3FFFFFFF;

std::uint64_t WordAt(unsigned char const* bytes)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

}  // namespace

MeshRecordReader::MeshRecordReader(StoreCursor& store, StoreMaterials materials, bool geometryInfoLayout,
                                   XMLPolygonMesh::Content& content)
    : m_store(store), m_materials(materials), m_geometryInfoLayout(geometryInfoLayout), m_content(content)
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
    ReadTriples(m_store, vertexCount, m_content.vertices);
    ReadTriples(m_store, normalCount, m_content.normals);
    ReadTextureVertices(textureCount);

    // A polygon takes eight bytes at the least, and behind the end of the file none has any effect.
    unsigned long long const mostPolygons = std::min(polygonCount, m_store.Remaining() / 8);
    m_content.polygons =
        std::make_unique<PolygonSlab>(static_cast<std::size_t>(mostPolygons), normalCount > 0, textureCount > 0);
    for (unsigned long long i = 0; i < polygonCount && !m_store.HasEnded(); ++i)
        ReadPolygon(normalCount > 0, textureCount > 0);
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
    bytes += kWord;
    auto const takeList = [&](std::int32_t* place)
    {
        for (std::uint64_t i = 0; i < vertexCount; ++i, bytes += kWord)
            place[i] = static_cast<std::int32_t>(WordAt(bytes));
    };
    PolygonSlab& polygons = *m_content.polygons;
    takeList(polygons.Begin(static_cast<std::uint32_t>(vertexCount)));
    std::uint32_t slot = kNoMaterialSlot;
    if (*bytes++ != 0)
    {
        slot = SlotOf(WordAt(bytes));
        bytes += kWord;
    }
    if (mayHaveNormals && *bytes++ != 0)
        takeList(polygons.AddNormals());
    polygons.End(slot);
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
    if (stated > kMostVertices)
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
        readList(polygons.AddNormals());
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
        m_content.materialSets.AddWithUniquenessCheck(ids);
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
