#include "exchange/export/ExportSideFiles.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <system_error>

#include "exchange/run/WorkFolder.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr char kBuffers[] = "buffers";
constexpr char kImages[] = "images";
// In front of the first vertex, where a library is named.
constexpr int kMostLines = 1000;
constexpr std::string_view kLibrary = "mtllib ";

std::string ExtensionOf(fs::path const& target)
{
    std::string extension = target.extension().string();
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return extension;
}

// Of a document of glTF nothing but these two lists is kept.
std::set<std::string> NamesInGltf(std::istream& file)
{
    json const document = json::parse(
        file,
        [](int depth, json::parse_event_t event, json const& key)
        { return depth != 1 || event != json::parse_event_t::key || key == kBuffers || key == kImages; },
        false);
    std::set<std::string> names;
    for (char const* const list : {kBuffers, kImages})
        if (auto const entries = document.find(list); entries != document.end() && entries->is_array())
            for (json const& entry : *entries)
                if (entry.is_object() && entry.contains("uri") && entry["uri"].is_string())
                    names.insert(entry["uri"].get<std::string>());
    return names;
}

std::set<std::string> NamesInObj(std::istream& file)
{
    std::set<std::string> names;
    std::string line;
    for (int i = 0; i < kMostLines && std::getline(file, line); ++i)
        if (line.starts_with(kLibrary))
            names.insert(line.substr(kLibrary.size(), line.find_last_not_of("\r ") + 1 - kLibrary.size()));
    return names;
}

// What the file at the target names.
std::set<std::string> NamesIn(fs::path const& target)
{
    std::ifstream file(target, std::ios::binary);
    if (!file)
        return {};
    return ExtensionOf(target) == ".gltf" ? NamesInGltf(file) : NamesInObj(file);
}

}  // namespace

std::string UriOfFile(std::string const& name)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri;
    for (char const character : name)
    {
        auto const byte = static_cast<unsigned char>(character);
        bool const isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
        if (isPlain)
            uri += character;
        else
            uri += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return uri;
}

std::vector<std::string> ExportSideFileNames(fs::path const& target)
{
    std::string const extension = ExtensionOf(target);
    if (extension != ".gltf" && extension != ".obj")
        return {};
    return {fs::path(target.filename()).replace_extension(extension == ".obj" ? ".mtl" : ".bin").string()};
}

void ExpectOwnSideFiles(fs::path const& target, std::vector<std::string> const& names)
{
    std::optional<std::set<std::string>> own;
    for (std::string const& name : names)
    {
        fs::path const path = target.parent_path() / name;
        std::error_code ignored;
        if (name == target.filename() || !fs::exists(fs::symlink_status(path, ignored)))
            continue;
        if (!own)
            own = NamesIn(target);
        if (own->count(ExtensionOf(target) == ".gltf" ? UriOfFile(name) : name) == 0)
            throw TargetError(path.string() + ": it is there and belongs to no earlier export to " +
                              target.filename().string() + "; --force replaces it");
    }
}

}  // namespace KVR
