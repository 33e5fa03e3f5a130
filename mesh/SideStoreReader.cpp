#include "mesh/SideStoreReader.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/OpenFailure.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/StoreCursor.h"
#include "geometry/XMLCurve.h"
#include "geometry/curvedata/CreateCurveData.h"
#include "mesh/MeshRecordReader.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/XMLProducerImpl.h"
#include "producer/XMLProducerOptions.h"

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
bool Enter(ObjectStore<Object>& store, UTF8String const& id, std::unique_ptr<Object> object)
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

StoreMaterials ReadMaterialTable(StoreCursor& store, unsigned long long offset)
{
    unsigned long long const records = store.Position();
    store.Seek(offset);
    unsigned long long count = 0;
    store.Read(count);
    StoreMaterials::Table ids;
    for (unsigned long long i = 0; i < count && !store.HasEnded(); ++i)
    {
        // Kept: an empty id is dropped and those behind it move up, while the count stays.
        UTF8String id;
        if (store.Read(id) && !id.IsEmpty())
            ids.push_back(std::move(id));
    }
    TellObserver(&ReadObserver::TableRead, offset, store.Position());
    store.Seek(records);
    // Kept: of the number that is stated 32 bits count.
    return {std::make_shared<StoreMaterials::Table const>(std::move(ids)), static_cast<std::uint32_t>(count)};
}

// The memory of a mesh's segments, and what its records say of visibility, one after the other.
struct SegmentSpace
{
    StoreMemory memory;
    std::vector<unsigned char> flags;
};

// What a list of u64 holds behind a run at its beginning, in memory with the run in front of it, and with zeros for
// what the file does not hold.
std::int32_t const* ReadOthers(StoreCursor& store, std::size_t count, std::uint32_t first, std::size_t run,
                               std::byte* memory)
{
    auto* const indices = reinterpret_cast<std::int32_t*>(memory);
    for (std::size_t i = 0; i < run; ++i)
        indices[i] = static_cast<std::int32_t>(first + static_cast<std::uint32_t>(i));
    std::size_t const held = run + store.ReadIndices(indices + run, count - run);
    std::fill(indices + held, indices + count, 0);
    return indices;
}

// Appends a segment, for which there is room.
void ReadSegment(StoreCursor& store, StoreMemory& memory, StoreMemory::Blocks& blocks, MeshSegmentList& segments)
{
    unsigned long long claimed = 0;
    store.Read(claimed);
    store.Expect(claimed, sizeof(unsigned long long), sizeof(std::int32_t));
    auto const count = static_cast<std::size_t>(claimed);
    unsigned long long first = 0;
    std::size_t const run = store.ReadRun(first, count);
    auto const narrow = static_cast<std::uint32_t>(first);
    std::int32_t const* const indices =
        run == count ? nullptr
                     : ReadOthers(store, count, narrow, run, memory.Take(count * sizeof(std::int32_t), blocks));
    segments.Append(indices, count, narrow);
}

void ReadSegments(StoreCursor& store, SegmentSpace& space, XMLPolygonMesh::Content& mesh)
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
    space.flags.assign(static_cast<std::size_t>(flagCount), 0);
    for (std::size_t i = 0; i < space.flags.size() && !store.HasEnded(); ++i)
    {
        bool flag = false;
        store.Read(flag);
        space.flags[i] = flag ? 1 : 0;
    }

    store.Expect(faceCount, sizeof(unsigned long long), sizeof(FaceSegmentInfo));
    mesh.faceSegments.ReserveMore(static_cast<std::size_t>(faceCount), space.memory, mesh.segmentMemory);
    for (unsigned long long i = 0; i < faceCount; ++i)
    {
        ReadSegment(store, space.memory, mesh.segmentMemory, mesh.faceSegments);
        if (i < space.flags.size() && space.flags[static_cast<std::size_t>(i)] == 0)
            mesh.faceSegments.HideLast();
    }
    store.Expect(edgeCount, sizeof(unsigned long long), sizeof(EdgeSegmentInfo));
    mesh.edgeSegments.ReserveMore(static_cast<std::size_t>(edgeCount), space.memory, mesh.segmentMemory);
    for (unsigned long long i = 0; i < edgeCount; ++i)
        ReadSegment(store, space.memory, mesh.segmentMemory, mesh.edgeSegments);
}

// The id is looked at where it stands in the file: a text of its own would cost more than to find the mesh.
MeshStore::value_type& EntryOf(std::string_view id, MeshStore& meshStore)
{
    auto const found = meshStore.find(id);
    return found != meshStore.end() ? *found : *meshStore.try_emplace(UTF8String(id)).first;
}

// Meshes stand far from each other, and mostly come in the same order again: the places where their segments go are on
// their way while those of others are read.
void FetchSegmentsAhead([[maybe_unused]] MeshStore const& meshStore)
{
#if defined(__GNUC__)
    constexpr std::size_t kAhead = 8;
    if (XMLPolygonMesh* const mesh = meshStore.Ahead(kAhead))
    {
        XMLPolygonMesh::Content const& content = mesh->StoreContent();
        __builtin_prefetch(&content.segmentMemory, 1);
        __builtin_prefetch(&content.isSegmentVisibilityStored, 1);
    }
#endif
}

// A store may well say how many records it has; one that says too many gets room for no more than it can hold.
template <class Store>
void ReserveRecords(Store& objects, unsigned long long count, StoreCursor const& store)
{
    constexpr unsigned long long kLeastRecord = 3 * sizeof(unsigned long long);
    objects.ReserveMore(static_cast<std::size_t>(std::min(count, store.Remaining() / kLeastRecord)));
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
    UTF16String const fullPath = ResolveSideFilePath(m_sceneFilePath, path);
    FilePtr const file(UTF8String(fullPath), "rb");
    if (!file)
        return NotOpened(fullPath);
    errno = 0;
    bool const isRead = ReadMeshes(file, meshStore, curveStore);
    TellIfUnread(file, fullPath);
    return isRead;
}

bool SideStoreReader::ReadMeshes(std::FILE* file, MeshStore& meshStore, CurveStore& curveStore)
{
    StoreCursor store(file, m_swapBytes, StoreCursor::kWholeStore);
    unsigned long long recordCount = 0;
    StoreMaterials materials = ReadHeader(store, recordCount);
    TellObserver(&ReadObserver::RecordsClaimed, recordCount);
    if (recordCount == 0)
        return false;
    // Meshes take about as much memory as their records take of the file.
    StoreMemory memory(store.Remaining());
    ReserveRecords(meshStore, recordCount, store);
    MeshRecordReader meshes(store, std::move(materials), m_geometryInfoLayout, memory);
    for (unsigned long long i = 0; i < recordCount && !store.HasEnded(); ++i)
        ReadRecord(store, memory, meshes, {meshStore, curveStore});
    return true;
}

StoreMaterials SideStoreReader::ReadHeader(StoreCursor& store, unsigned long long& recordCount) const
{
    if (!m_geometryInfoLayout)
    {
        unsigned long long headerWord = 0;
        store.Read(headerWord);
    }
    store.Read(recordCount);
    if (recordCount == 0)
        return {};
    unsigned long long tableOffset = 0;
    store.Read(tableOffset);
    if (tableOffset < kLeastTableOffset || tableOffset > kLastTableOffset)
        return {};
    return ReadMaterialTable(store, tableOffset);
}

void SideStoreReader::ReadRecord(StoreCursor& store, StoreMemory& memory, MeshRecordReader& meshes,
                                 Stores const& stores)
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
        std::unique_ptr<XMLPolygonMesh> mesh(new (memory) XMLPolygonMesh(id, m_producer));
        meshes.Read(mesh->StoreContent());
        isKept = Enter(stores.meshes, id, std::move(mesh));
    }
    else if (IsCurveKind(type))
    {
        isKept =
            Enter(stores.curves, id, std::make_unique<XMLCurve>(m_producer, store, static_cast<std::uint32_t>(type)));
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
        return NotOpened(fullPath);
    errno = 0;
    bool const isRead = ReadSegmentRecords(file, meshStore);
    TellIfUnread(file, fullPath);
    return isRead;
}

bool SideStoreReader::NotOpened(UTF16String const& fullPath) const
{
    if (IsFailureOfSystem(errno))
        TellUnread(fullPath);
    TellObserver(&ReadObserver::StoreFailed, StoreFailure::kNotOpened, "the file cannot be opened");
    return false;
}

// A store that the system ceases to give counts as one that is short, but for who is to be told. Of a place that it
// cannot go to, errno alone tells, which was cleared before.
void SideStoreReader::TellIfUnread(std::FILE* file, UTF16String const& fullPath) const
{
    if (std::ferror(file) || errno == EIO)
        TellUnread(fullPath);
}

void SideStoreReader::TellUnread(UTF16String const& fullPath) const
{
    XMLProducerOptions const* const options = m_producer ? m_producer->options : nullptr;
    if (options && options->UnreadSideFileHandler())
        options->UnreadSideFileHandler()(fullPath);
}

bool SideStoreReader::ReadSegmentRecords(std::FILE* file, MeshStore& meshStore)
{
    StoreCursor store(file, m_swapBytes, StoreCursor::kWholeStore);
    unsigned long long recordCount = 0;
    store.Read(recordCount);
    TellObserver(&ReadObserver::RecordsClaimed, recordCount);
    if (recordCount == 0)
        return false;
    // An index takes half of the memory that it takes of the file, or none.
    constexpr unsigned long long kFirstBlock = 64 * 1024;
    SegmentSpace space{StoreMemory(store.Remaining() / 2, kFirstBlock), {}};
    for (unsigned long long i = 0; i < recordCount && !store.HasEnded(); ++i)
    {
        unsigned long long const begin = store.Position();
        std::string_view id;
        if (!store.Read(id) || id.empty())
        {
            TellRecord(store, "segments", UTF8String(), begin, false);
            continue;
        }
        // Kept: a mesh that is not there gets an entry without one, and of its record nothing more is consumed.
        MeshStore::value_type& entry = EntryOf(id, meshStore);
        FetchSegmentsAhead(meshStore);
        if (XMLPolygonMesh* const mesh = entry.second.object)
            ReadSegments(store, space, mesh->StoreContent());
        TellRecord(store, "segments", entry.first, begin, entry.second.object != nullptr);
    }
    return true;
}

}  // namespace KVR
