#include "mesh/SideStoreReader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/StoreCursor.h"
#include "geometry/XMLCurve.h"
#include "geometry/curvedata/CreateCurveData.h"
#include "mesh/MeshRecordReader.h"
#include "mesh/XMLPolygonMesh.h"

namespace KVR
{

namespace
{

constexpr unsigned long long kMeshRecord = 0;
// An offset below this one says that there is no material table.
constexpr unsigned long long kLeastTableOffset = 8;
// A table behind this offset is out of reach.
constexpr unsigned long long kLastTableOffset = 0x7FFFFFFF;

// The first object of an id stays; whether this is it.
template <class Object>
bool Enter(std::map<UTF8String, StoreEntry<Object>>& store, UTF8String const& id, std::unique_ptr<Object> object)
{
    auto const [place, isNew] = store.try_emplace(id);
    if (!isNew)
        return false;
    place->second.object = object.get();
    place->second.owned = std::move(object);
    return true;
}

void TellRecord(StoreCursor const& store, std::string_view kind, UTF8String const& id, unsigned long long begin,
                bool isKept)
{
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        observer->RecordRead({kind, id, begin, store.Position(), isKept});
}

bool NotOpened()
{
    TellObserver(&ReadObserver::StoreFailed, StoreFailure::kNotOpened, "the file cannot be opened");
    return false;
}

void Append(PolygonIndexSet& polygons, std::int32_t index)
{
    polygons.Add(static_cast<std::uint32_t>(index));
}
void Append(VertexIndexSet& vertices, std::int32_t index)
{
    vertices.Append(index);
}

// Reads a list of u64 into an index set, a piece at a time, with zeros for what the file does not hold.
template <class IndexSet>
IndexSet ReadIndexSet(StoreCursor& store)
{
    unsigned long long count = 0;
    store.Read(count);
    store.Expect(count, sizeof(unsigned long long), sizeof(std::int32_t));
    IndexSet indices;
    indices.Reserve(count);
    std::array<std::int32_t, 1024> piece;
    for (unsigned long long read = 0; read < count;)
    {
        auto const size = static_cast<std::size_t>(std::min<unsigned long long>(count - read, piece.size()));
        std::size_t const held = store.ReadIndices(piece.data(), size);
        std::fill(piece.begin() + held, piece.begin() + size, 0);
        for (std::size_t i = 0; i < size; ++i)
            Append(indices, piece[i]);
        read += size;
    }
    return indices;
}

// Makes room for so many more items. Many records may add to one mesh, so that the list at least doubles when it grows.
template <class Item>
void ReserveMore(std::vector<Item>& list, unsigned long long count)
{
    std::size_t const needed = list.size() + static_cast<std::size_t>(count);
    if (needed > list.capacity())
        list.reserve(std::max(needed, 2 * list.size()));
}

void ReadSegments(StoreCursor& store, XMLPolygonMesh::Content& mesh)
{
    unsigned long long faceCount = 0;
    unsigned long long edgeCount = 0;
    unsigned long long flagCount = 0;
    store.Read(faceCount);
    store.Read(edgeCount);
    store.Read(flagCount);
    if (flagCount > 0)
        mesh.isSegmentVisibilityStored = true;
    store.Expect(flagCount, 1, 1);
    std::vector<bool> flags(static_cast<std::size_t>(flagCount));
    for (std::size_t i = 0; i < flags.size() && !store.HasEnded(); ++i)
    {
        bool flag = false;
        store.Read(flag);
        flags[i] = flag;
    }

    store.Expect(faceCount, sizeof(unsigned long long), sizeof(FaceSegmentInfo));
    ReserveMore(mesh.faceSegments, faceCount);
    for (unsigned long long i = 0; i < faceCount; ++i)
    {
        auto polygons = ReadIndexSet<PolygonIndexSet>(store);
        FaceSegmentInfo& segment = mesh.faceSegments.emplace_back();
        segment.SetPolygonIndexSet(std::move(polygons));
        if (i < flags.size())
            segment.SetVisible(flags[static_cast<std::size_t>(i)]);
    }
    store.Expect(edgeCount, sizeof(unsigned long long), sizeof(EdgeSegmentInfo));
    ReserveMore(mesh.edgeSegments, edgeCount);
    for (unsigned long long i = 0; i < edgeCount; ++i)
    {
        auto vertices = ReadIndexSet<VertexIndexSet>(store);
        mesh.edgeSegments.emplace_back().SetVertexIndexSet(std::move(vertices));
    }
}

}  // namespace

SideStoreReader::SideStoreReader(UTF16String const& sceneFilePath, XMLProducerImpl* producer, bool geometryInfoLayout)
    : m_sceneFilePath(sceneFilePath),
      m_producer(producer),
      m_geometryInfoLayout(geometryInfoLayout),
      m_swapBytes(IOUtil::IsBigEndian())
{
}

bool SideStoreReader::ReadMeshStore(UTF16String const& path, MeshStore& meshStore, CurveStore& curveStore)
{
    m_materialTable.clear();
    m_materialCount = 0;
    FilePtr const file(UTF8String(ResolveSideFilePath(m_sceneFilePath, path)), "rb");
    if (!file)
        return NotOpened();
    StoreCursor store(file, m_swapBytes, StoreCursor::kWholeStore);
    unsigned long long recordCount = 0;
    ReadHeader(store, recordCount);
    TellObserver(&ReadObserver::RecordsClaimed, recordCount);
    if (recordCount == 0)
        return false;
    // Meshes take about as much memory as their records take of the file.
    StoreMemory memory(store.Remaining());
    for (unsigned long long i = 0; i < recordCount && !store.HasEnded(); ++i)
        ReadRecord(store, memory, meshStore, curveStore);
    return true;
}

void SideStoreReader::ReadHeader(StoreCursor& store, unsigned long long& recordCount)
{
    if (!m_geometryInfoLayout)
    {
        unsigned long long headerWord = 0;
        store.Read(headerWord);
    }
    store.Read(recordCount);
    if (recordCount == 0)
        return;
    unsigned long long tableOffset = 0;
    store.Read(tableOffset);
    if (tableOffset >= kLeastTableOffset && tableOffset <= kLastTableOffset)
        ReadMaterialTable(store, tableOffset);
}

void SideStoreReader::ReadMaterialTable(StoreCursor& store, unsigned long long offset)
{
    unsigned long long const records = store.Position();
    store.Seek(offset);
    store.Read(m_materialCount);
    for (unsigned long long i = 0; i < m_materialCount && !store.HasEnded(); ++i)
    {
        // Kept: an empty id is dropped and those behind it move up, while the count stays.
        UTF8String id;
        if (store.Read(id) && !id.IsEmpty())
            m_materialTable.push_back(std::move(id));
    }
    TellObserver(&ReadObserver::TableRead, offset, store.Position());
    store.Seek(records);
}

void SideStoreReader::ReadRecord(StoreCursor& store, StoreMemory& memory, MeshStore& meshStore, CurveStore& curveStore)
{
    unsigned long long recordWord = 0;
    unsigned long long type = 0;
    UTF8String id;
    unsigned long long const begin = store.Position();
    store.Read(recordWord);
    if (!store.Read(type) || !store.Read(id) || id.IsEmpty())
    {
        TellRecord(store, "unknown", id, begin, false);
        return;
    }
    bool isKept = false;
    if (type == kMeshRecord)
    {
        auto mesh = std::make_unique<XMLPolygonMesh>(id, m_producer);
        StoreMaterials const materials{m_materialTable, static_cast<std::uint32_t>(m_materialCount)};
        MeshRecordReader(store, materials, m_geometryInfoLayout, memory, mesh->StoreContent()).Read();
        isKept = Enter(meshStore, id, std::move(mesh));
    }
    else if (IsCurveKind(type))
    {
        isKept = Enter(curveStore, id, std::make_unique<XMLCurve>(m_producer, store, static_cast<std::uint32_t>(type)));
    }
    // Kept: a record of another type consumes nothing behind its id.
    TellRecord(store, type == kMeshRecord ? "mesh" : IsCurveKind(type) ? "curve" : "unknown", id, begin, isKept);
}

bool SideStoreReader::ReadMeshSegmentStore(UTF16String const& fullPath, MeshStore& meshStore)
{
    if (meshStore.empty())
        return true;
    FilePtr const file(UTF8String(fullPath), "rb");
    if (!file)
        return NotOpened();
    StoreCursor store(file, m_swapBytes, StoreCursor::kWholeStore);
    unsigned long long recordCount = 0;
    store.Read(recordCount);
    TellObserver(&ReadObserver::RecordsClaimed, recordCount);
    if (recordCount == 0)
        return false;
    for (unsigned long long i = 0; i < recordCount && !store.HasEnded(); ++i)
    {
        unsigned long long const begin = store.Position();
        UTF8String id;
        store.Read(id);
        XMLPolygonMesh* mesh = nullptr;
        // Kept: a mesh that is not there gets an entry without one, and of its record nothing more is consumed.
        if (!id.IsEmpty() && (mesh = meshStore[id].object) != nullptr)
            ReadSegments(store, mesh->StoreContent());
        TellRecord(store, "segments", id, begin, mesh != nullptr);
    }
    return true;
}

}  // namespace KVR
