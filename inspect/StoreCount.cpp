#include "inspect/StoreCount.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

#include "framework/api/IOUtil.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/SideFileParser.h"
#include "framework/xml_util/StoreCursor.h"
#include "inspect/RootChildren.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/estimate/StoreHead.h"

namespace KVR
{

namespace
{

using Kind = SideFileCensus::Kind;

Kind KindOf(SectionRecord const& section)
{
    return KindOfSection(section.element->getNodeName()).value_or(Kind::kBlob);
}

// How many assets there are whole, from where the file stands: passes over what they hold.
std::uint64_t WholeAssets(std::FILE* file, std::uint64_t claimed)
{
    StoreCursor store(file, IOUtil::IsBigEndian(), StoreCursor::kFieldsOnly);
    for (std::uint64_t count = 0; count < claimed; ++count)
    {
        UTF8String id;
        UTF8String type;
        unsigned long long size = 0;
        if (!store.Read(id) || !store.Read(type) || !store.Read(size) || store.Remaining() < size)
            return count;
        store.Seek(store.Position() + size);
    }
    return claimed;
}

// The bytes in front of the records of a store that a cursor reads.
std::uint64_t HeadOf(Kind kind)
{
    constexpr std::uint64_t kWord = 8;
    // The count alone; with the place of the table behind it; with a word in front of it.
    return kWord * (kind == Kind::kSegmentStore ? 1 : kind == Kind::kGeometryStore ? 2 : 3);
}

// Whether the records that were told stand side by side from the head to the end of the file, as they do when it ends
// before all that it claims were read.
bool IsFilled(SectionRecord const& section, std::uint64_t size)
{
    std::uint64_t end = HeadOf(KindOf(section));
    for (StoreRecord const& record : section.records)
    {
        if (record.begin != end)
            return false;
        end = record.end;
    }
    return end >= size;
}

}  // namespace

StoreCount StoreCount::Of(SectionRecord const& section)
{
    StoreCount count;
    Kind const kind = KindOf(section);
    if (kind == Kind::kPersistentIds)
    {
        RootChildren census;
        static_cast<void>(ParseSideFile(UTF16String(UTF8String(section.path)), census));
        count.records = census.count;
        count.whole = census.count;
        return count;
    }
    FilePtr const file(UTF8String(section.path), "rb");
    if (!file)
        return count;
    std::error_code error;
    std::uintmax_t const size = std::filesystem::file_size(section.path, error);
    count.size = error ? 0 : size;
    bool isText = false;
    count.records = RecordsInHead(file, kind, isText).value_or(0);
    // A cursor reads ahead.
    constexpr long kAssetHead = 24;
    if (kind == Kind::kAssets)
        count.whole = std::fseek(file, kAssetHead, SEEK_SET) == 0 ? WholeAssets(file, count.records) : 0;
    return count;
}

std::uint64_t StoreCount::OutOfReach(SectionRecord const& section) const
{
    if (whole)
        return records - *whole;
    std::uint64_t const met = section.records.size();
    if (met >= records)
        return 0;
    bool const isCursor = section.size > 0;
    bool const hasEnded = isCursor && section.position >= size && IsFilled(section, size);
    bool const gaveNothing = met == 0 && !section.failures.empty();
    // Where no meshes stand in front the file of their segments is left alone.
    bool const isLeftAlone = met == 0 && !isCursor && KindOf(section) == Kind::kSegmentStore;
    return hasEnded || gaveNothing || isLeftAlone ? records - met : 0;
}

}  // namespace KVR
