#include "inspect/estimate/StoreHead.h"

#include <algorithm>
#include <iterator>

#include "framework/api/IOUtil.h"
#include "framework/xml_util/StoreCursor.h"

namespace KVR
{

namespace
{

using Kind = SideFileCensus::Kind;

constexpr std::size_t kMarkSize = 8;

struct KindRow
{
    InfoSection const* section;
    Kind kind;
};

constexpr KindRow kKinds[] = {
    {&InfoSections::kKernelStore, Kind::kKernelStore},
    {&InfoSections::kGeometryStore, Kind::kGeometryStore},
    {&InfoSections::kSegmentStore, Kind::kSegmentStore},
    {&InfoSections::kMeshStore, Kind::kMeshStore},
    {&InfoSections::kAssets, Kind::kAssets},
    {&InfoSections::kPersistentIds, Kind::kPersistentIds},
};

std::optional<std::uint64_t> KernelEntities(std::FILE* file, bool& isText)
{
    constexpr long kBinaryHead = 32;
    constexpr long kTextHead = 60;
    char mark[kMarkSize] = {};
    if (std::fread(mark, 1, kMarkSize, file) != kMarkSize)
        return std::nullopt;
    std::string_view const form(mark, kMarkSize);
    isText = form == "KVRKERNT";
    if ((!isText && form != "KVRKERNB") || std::fseek(file, isText ? kTextHead : kBinaryHead, SEEK_SET) != 0)
        return std::nullopt;
    unsigned long long count = 0;
    if (isText)
        return std::fscanf(file, "%19llu", &count) == 1 ? std::optional<std::uint64_t>(count) : std::nullopt;
    StoreCursor cursor(file, IOUtil::IsBigEndian(), StoreCursor::kFieldsOnly);
    return cursor.Read(count) ? std::optional<std::uint64_t>(count) : std::nullopt;
}

// The number of records in the head of a store, behind so many words.
std::optional<std::uint64_t> RecordsBehind(std::FILE* file, int words)
{
    StoreCursor cursor(file, IOUtil::IsBigEndian(), StoreCursor::kFieldsOnly);
    unsigned long long count = 0;
    for (int i = 0; i <= words; ++i)
        if (!cursor.Read(count))
            return std::nullopt;
    return count;
}

// Behind the mark stand the version, of which there is one, and the count.
std::optional<std::uint64_t> Assets(std::FILE* file)
{
    char mark[kMarkSize] = {};
    if (std::fread(mark, 1, kMarkSize, file) != kMarkSize || std::string_view(mark, kMarkSize) != "KVRASSET")
        return std::nullopt;
    StoreCursor cursor(file, IOUtil::IsBigEndian(), StoreCursor::kFieldsOnly);
    unsigned long long version = 0;
    unsigned long long count = 0;
    return cursor.Read(version) && version == 1 && cursor.Read(count) ? std::optional<std::uint64_t>(count)
                                                                      : std::nullopt;
}

}  // namespace

Kind KindOf(InfoSection const& section)
{
    return std::find_if(std::begin(kKinds), std::end(kKinds),
                        [&](KindRow const& row) { return row.section == &section; })
        ->kind;
}

std::optional<Kind> KindOfSection(std::u16string_view element)
{
    KindRow const* const row =
        std::find_if(std::begin(kKinds), std::end(kKinds),
                     [&](KindRow const& known) { return std::u16string_view(known.section->name) == element; });
    return row == std::end(kKinds) ? std::nullopt : std::optional<Kind>(row->kind);
}

std::optional<std::uint64_t> RecordsInHead(std::FILE* file, Kind kind, bool& isText)
{
    switch (kind)
    {
        case Kind::kKernelStore:
            return KernelEntities(file, isText);
        case Kind::kMeshStore:
            return RecordsBehind(file, 1);
        case Kind::kGeometryStore:
        case Kind::kSegmentStore:
            return RecordsBehind(file, 0);
        case Kind::kAssets:
            return Assets(file);
        case Kind::kPersistentIds:
        case Kind::kBlob:
        case Kind::kProperties:
            break;
    }
    return std::nullopt;
}

}  // namespace KVR
