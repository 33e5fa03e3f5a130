#include "inspect/estimate/SceneCensus.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <unordered_map>

#include "framework/api/IOUtil.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/StoreCursor.h"

namespace KVR
{

namespace
{

using Kind = SideFileCensus::Kind;

// The beginning of a property file that is looked at.
constexpr std::size_t kSample = std::size_t{128} * 1024;

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

Kind KindOf(InfoSection const* section)
{
    for (KindRow const& row : kKinds)
        if (row.section == section)
            return row.kind;
    return Kind::kBlob;
}

UTF16String FullPath(UTF16String const& scene, std::string const& path, Kind kind)
{
    UTF16String const text{UTF8String(path)};
    return kind == Kind::kAssets || kind == Kind::kBlob ? PathFromSceneFolder(scene, text)
                                                        : ResolveSideFilePath(scene, text);
}

std::uint64_t SizeOf(std::FILE* file)
{
    struct stat status = {};
    return ::fstat(::fileno(file), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::optional<std::uint64_t> KernelEntities(std::FILE* file, bool& isText)
{
    constexpr std::size_t kMark = 8;
    constexpr long kBinaryHead = 32;
    constexpr long kTextHead = 60;
    char mark[kMark] = {};
    if (std::fread(mark, 1, kMark, file) != kMark)
        return std::nullopt;
    std::string_view const form(mark, kMark);
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

void ReadHead(std::FILE* file, SideFileCensus& side)
{
    switch (side.kind)
    {
        case Kind::kKernelStore:
            side.records = KernelEntities(file, side.isText);
            break;
        case Kind::kMeshStore:
            side.records = RecordsBehind(file, 1);
            break;
        case Kind::kGeometryStore:
        case Kind::kSegmentStore:
            side.records = RecordsBehind(file, 0);
            break;
        default:
            break;
    }
}

SideFileCensus SideFileOf(UTF16String const& scene, DocumentCensus::Mention const& mention)
{
    SideFileCensus side;
    side.kind = KindOf(mention.section);
    side.name = mention.path;
    FilePtr const file(UTF8String(FullPath(scene, mention.path, side.kind)), "rb");
    if (!file)
        return side;
    side.size = SizeOf(file);
    side.read = mention.section ? *side.size : std::min(*side.size, mention.claimed);
    ReadHead(file, side);
    return side;
}

// The first entries of a property file: how many bytes one takes, and whom they belong to.
struct PropertySample
{
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;
    std::unordered_map<std::string, std::uint64_t> owners;
    DocumentCensus::Texts ids;
};

PropertySample SampleOf(std::FILE* file)
{
    constexpr std::string_view kOwner = " ObjectID=";
    PropertySample sample;
    std::string text(kSample, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file));
    sample.bytes = text.size();
    for (std::size_t at = text.find(kOwner); at != std::string::npos; at = text.find(kOwner, at))
    {
        at += kOwner.size();
        std::size_t const end = at < text.size() ? text.find(text[at], at + 1) : std::string::npos;
        if (end == std::string::npos)
            break;
        ++sample.entries;
        sample.ids.insert(text.substr(at + 1, end - at - 1));
    }
    return sample;
}

void CountProperties(SceneCensus& census, std::string const& scenePath, std::FILE* document)
{
    UTF16String const scene{UTF8String(scenePath)};
    UTF8String const path(ReplaceExtension(scene, UTF16String(kPropertyFileExtension.Document())));
    FilePtr const file(path, "rb");
    PropertySample const sample = file ? SampleOf(file) : PropertySample();
    census.problem = census.document.Count(document, sample.ids);
    if (!file)
        return;
    SideFileCensus side;
    side.kind = Kind::kProperties;
    side.name = std::filesystem::path(path.View()).filename().string();
    side.size = SizeOf(file);
    side.read = *side.size;
    if (sample.entries > 0)
    {
        side.records = sample.bytes < kSample ? sample.entries : *side.size * sample.entries / sample.bytes;
        side.kept =
            std::min(1.0, static_cast<double>(census.document.wantedIds) / static_cast<double>(sample.ids.size()));
    }
    census.sideFiles.push_back(side);
}

}  // namespace

char const* NameOf(SideFileCensus::Kind kind) noexcept
{
    switch (kind)
    {
        case Kind::kKernelStore:
            return "kernel store";
        case Kind::kGeometryStore:
        case Kind::kMeshStore:
            return "mesh store";
        case Kind::kSegmentStore:
            return "segment store";
        case Kind::kAssets:
            return "assets";
        case Kind::kPersistentIds:
            return "persistent ids";
        case Kind::kBlob:
            return "blob";
        case Kind::kProperties:
            return "properties";
    }
    return "";
}

SceneCensus SceneCensus::Of(std::string const& scenePath)
{
    SceneCensus census;
    errno = 0;
    FilePtr const file(UTF8String(scenePath), "rb");
    if (!file)
    {
        census.problem = DocumentCensus::Problem::kUnreadable;
        census.systemError = errno;
        return census;
    }
    census.documentBytes = SizeOf(file);
    CountProperties(census, scenePath, file);
    if (census.problem == DocumentCensus::Problem::kUnreadable)
        census.systemError = errno;
    UTF16String const scene{UTF8String(scenePath)};
    std::vector<SideFileCensus> named;
    for (DocumentCensus::Mention const& mention : census.document.mentions)
    {
        SideFileCensus side = SideFileOf(scene, mention);
        named.push_back(std::move(side));
    }
    census.sideFiles.insert(census.sideFiles.begin(), std::make_move_iterator(named.begin()),
                            std::make_move_iterator(named.end()));
    return census;
}

}  // namespace KVR
