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
#include "inspect/estimate/StoreHead.h"

namespace KVR
{

namespace
{

using Kind = SideFileCensus::Kind;

// The beginning of a property file that is looked at.
constexpr std::size_t kSample = std::size_t{128} * 1024;

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

SideFileCensus SideFileOf(UTF16String const& scene, DocumentCensus::Mention const& mention)
{
    SideFileCensus side;
    side.kind = mention.section ? KindOf(*mention.section) : Kind::kBlob;
    side.name = mention.path;
    FilePtr const file(UTF8String(FullPath(scene, mention.path, side.kind)), "rb");
    if (!file)
        return side;
    side.size = SizeOf(file);
    side.read = mention.section ? *side.size : std::min(*side.size, mention.claimed);
    // What is shown of assets is their bytes.
    if (side.kind != Kind::kAssets)
        side.records = RecordsInHead(file, side.kind, side.isText);
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
