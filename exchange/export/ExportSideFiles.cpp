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

// Takes the names of files out of a document of glTF as it is parsed: the texts "uri" of the entries of two lists.
// Whoever makes a document of it instead, needs memory to give it back, and ends where there is none.
class NamesOfGltf final : public nlohmann::json_sax<json>
{
public:
    std::set<std::string> names;

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, string_t const&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool string(string_t& text) override
    {
        if (m_isInList && m_depth == kEntry && m_key == "uri")
            names.insert(text);
        return true;
    }
    bool key(string_t& text) override
    {
        m_key = text;
        if (m_depth == kDocument)
            m_isInList = text == kBuffers || text == kImages;
        return true;
    }
    bool start_object(std::size_t) override { return Enter(); }
    bool end_object() override { return Leave(); }
    bool start_array(std::size_t) override { return Enter(); }
    bool end_array() override { return Leave(); }
    bool parse_error(std::size_t, std::string const&, nlohmann::detail::exception const&) override { return false; }

private:
    enum Depth
    {
        kDocument = 1,
        kEntry = 3
    };

    bool Enter()
    {
        ++m_depth;
        return true;
    }
    bool Leave()
    {
        --m_depth;
        return true;
    }

    std::size_t m_depth = 0;
    std::string m_key;
    bool m_isInList = false;
};

std::set<std::string> NamesInGltf(std::istream& file)
{
    NamesOfGltf found;
    return json::sax_parse(file, &found) ? std::move(found.names) : std::set<std::string>();
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
