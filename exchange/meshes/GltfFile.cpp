#include "exchange/meshes/GltfFile.h"

#include <algorithm>
#include <array>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/GltfCompressedView.h"
#include "output/JsonDepth.h"

namespace KVR
{

namespace
{

using Json = GltfFile::Json;

constexpr std::size_t kHeadSize = 12;
constexpr std::size_t kChunkHeadSize = 8;
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;
constexpr std::uint32_t kBinaryChunk = 0x004E4942;
constexpr char kCompression[] = "EXT_meshopt_compression";
// What one compressed byte may stand for, in all that is compressed.
constexpr std::size_t kMostTimes = 64;

// Extensions without which a document can be read.
constexpr std::string_view kKnown[] = {"KHR_materials_unlit",
                                       "KHR_mesh_quantization",
                                       "KHR_node_visibility",
                                       "KHR_texture_transform",
                                       "KHR_materials_emissive_strength",
                                       "KHR_materials_specular",
                                       "KHR_materials_ior",
                                       "KHR_lights_punctual",
                                       "EXT_mesh_features",
                                       "EXT_structural_metadata",
                                       "KHR_xmp_json_ld"};

Json const kEmptyObject = Json::object();
Json const kEmptyList = Json::array();

int HexDigit(char c)
{
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

int Base64Digit(char c)
{
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::size_t const place = kDigits.find(c);
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

}  // namespace

GltfFile::GltfFile(MeshReading& reading, std::string_view bytes) : m_reading(reading)
{
    std::string_view json = bytes;
    if (bytes.starts_with("glTF"))
        ReadContainer(bytes, json);
    Parse(json);
    RefuseExtensions();
    ReadBuffers(bytes);
    Decompress();
}

void GltfFile::ReadContainer(std::string_view bytes, std::string_view& json)
{
    if (bytes.size() < kHeadSize + kChunkHeadSize)
        throw ModelError("it ends within its head of 20 bytes");
    if (std::uint32_t const version = NumberAt<std::uint32_t>(bytes, 4); version != 2)
        throw ModelError("it is glTF " + std::to_string(version) + ", and 2 can be read");
    if (std::size_t const announced = NumberAt<std::uint32_t>(bytes, 8); announced != bytes.size())
        m_reading.Damage("its head announces " + WithCommas(announced) + " bytes, and it has " +
                         WithCommas(bytes.size()));
    json = {};
    for (std::size_t place = kHeadSize; place + kChunkHeadSize <= bytes.size();)
    {
        std::size_t const size = NumberAt<std::uint32_t>(bytes, place);
        std::uint32_t const type = NumberAt<std::uint32_t>(bytes, place + 4);
        place += kChunkHeadSize;
        std::size_t const there = std::min(size, bytes.size() - place);
        if (there < size)
            m_reading.Damage("a chunk announces " + WithCommas(size) + " bytes, and " + WithCommas(there) + " follow");
        if (type == kJsonChunk && json.empty())
            json = bytes.substr(place, there);
        else if (type == kBinaryChunk && !m_hasBinary)
        {
            m_binary = bytes.substr(place, there);
            m_hasBinary = true;
        }
        place += there;
    }
    if (json.empty())
        throw ModelError("it has no JSON chunk");
}

void GltfFile::Parse(std::string_view json)
{
    if (json.starts_with("\xEF\xBB\xBF"))
        json.remove_prefix(3);
    if (!IsUtf8(json))
        m_reading.Damage("its JSON is not UTF-8");
    if (!IsShallowJson(json))
        throw ModelError("its JSON has lists and objects more than 200 levels deep");
    std::string const text = TextOfBytes(json);
    try
    {
        m_root = Json::parse(text);
    }
    catch (Json::parse_error const& error)
    {
        throw ModelError("its JSON makes no sense from byte " + WithCommas(error.byte) + " on");
    }
    catch (Json::out_of_range const&)
    {
        throw ModelError("its JSON has a number beyond all bounds");
    }
    std::string const version = Text(Object(m_root, "asset"), "version");
    if (!m_root.is_object() || version.empty())
        throw ModelError("it is JSON, but no glTF");
    if (!version.starts_with("2."))
        throw ModelError("it is glTF " + version.substr(0, 20) + ", and 2 can be read");
}

void GltfFile::RefuseExtensions()
{
    for (Json const& entry : List("extensionsRequired"))
    {
        std::string const name = entry.is_string() ? entry.get<std::string>() : std::string();
        if (name == "KHR_draco_mesh_compression" || (name == kCompression && !CanDecompressGltf()))
            throw ModelError("its meshes are compressed with " + name + ", which cannot be read");
        if (name != kCompression && std::find(std::begin(kKnown), std::end(kKnown), name) == std::end(kKnown))
            m_reading.Damage("it requires the extension " + name + ", which cannot be read");
    }
}

void GltfFile::ReadBuffers(std::string_view bytes)
{
    Json const& buffers = List("buffers");
    m_loaded.resize(buffers.size());
    m_buffers.resize(buffers.size());
    for (std::size_t i = 0; i < buffers.size(); ++i)
    {
        std::string const uri = Text(buffers[i], "uri");
        std::string const name = "buffer " + std::to_string(i);
        std::size_t const announced = Index(buffers[i], "byteLength").value_or(0);
        if (uri.empty())
            m_buffers[i] = i == 0 ? m_binary : std::string_view();
        else if (auto data = DataOf(uri))
            m_loaded[i] = std::move(*data);
        else if (std::string const path = FileBeside(m_reading.options.folder, PathOf(uri)); !path.empty())
            m_loaded[i] = BytesOfFile(path);
        else
            m_reading.Damage(name + " is not there: \"" + uri.substr(0, 200) + '"');
        if (!m_loaded[i].empty())
            m_buffers[i] = m_loaded[i];
        if (uri.empty() && i > 0 && !Extension(buffers[i], kCompression).empty())
            continue;
        if (m_buffers[i].size() < announced)
            m_reading.Damage(name + " announces " + WithCommas(announced) + " bytes, and has " +
                             WithCommas(m_buffers[i].size()));
        m_buffers[i] = m_buffers[i].substr(0, announced);
    }
    m_reading.Tell(bytes.size() / 2, bytes.size());
}

Json const& GltfFile::List(char const* name) const
{
    auto const found = m_root.find(name);
    return found != m_root.end() && found->is_array() ? *found : kEmptyList;
}

Json const* GltfFile::Entry(char const* list, Json const& object, char const* member)
{
    if (!object.is_object() || !object.contains(member))
        return nullptr;
    Json const& entries = List(list);
    std::optional<std::size_t> const index = Index(object, member);
    if (index && *index < entries.size() && entries[*index].is_object())
        return &entries[*index];
    m_reading.Damage(std::string("an index of ") + list + " is not among the " + WithCommas(entries.size()));
    return nullptr;
}

std::string GltfFile::NameOf(char const* list, std::size_t index) const
{
    Json const& entries = List(list);
    std::string const name = index < entries.size() ? Text(entries[index], "name") : std::string();
    return std::string(list) + ' ' + std::to_string(index) + (name.empty() ? "" : " \"" + name + '"');
}

std::string_view GltfFile::View(std::size_t index)
{
    Json const& views = List("bufferViews");
    std::string const name = "buffer view " + std::to_string(index);
    if (index >= views.size())
    {
        m_reading.Damage(name + " is not among the " + WithCommas(views.size()));
        return {};
    }
    auto const unpacked = m_decompressed.find(index);
    return unpacked != m_decompressed.end() ? std::string_view(unpacked->second) : Bytes(views[index], name);
}

// Views that are compressed, each once. Those that name the same bytes unpack to no more than the file could hold.
void GltfFile::Decompress()
{
    Json const& views = List("bufferViews");
    std::size_t room = kMostTimes * Size();
    for (std::size_t i = 0; CanDecompressGltf() && i < views.size(); ++i)
    {
        Json const& claims = Extension(views[i], kCompression);
        if (claims.empty())
            continue;
        std::string const name = "buffer view " + std::to_string(i);
        std::size_t const length = Index(views[i], "byteLength").value_or(0);
        if (length > room)
            throw ModelError("its compressed views announce more than its bytes can hold");
        room -= length;
        try
        {
            m_decompressed[i] = DecompressedGltfView(claims, Bytes(claims, name), length, name);
        }
        catch (ModelError const& error)
        {
            m_decompressed[i].clear();
            m_reading.Damage(error.what());
        }
    }
}

std::size_t GltfFile::Size() const
{
    std::size_t size = 0;
    for (std::string_view const buffer : m_buffers)
        size += buffer.size();
    for (auto const& [index, bytes] : m_decompressed)
        size += bytes.size();
    return size;
}

// Of a view, or of what is compressed of one.
std::string_view GltfFile::Bytes(Json const& view, std::string const& name)
{
    std::optional<std::size_t> const buffer = Index(view, "buffer");
    if (!buffer || *buffer >= m_buffers.size())
    {
        m_reading.Damage(name + " is in no buffer");
        return {};
    }
    std::string_view const bytes = m_buffers[*buffer];
    std::size_t const offset = std::min(Index(view, "byteOffset").value_or(0), bytes.size());
    std::size_t const length = Index(view, "byteLength").value_or(0);
    if (Index(view, "byteOffset").value_or(0) > bytes.size() || length > bytes.size() - offset)
        m_reading.Damage(name + " reaches beyond its buffer of " + WithCommas(bytes.size()) + " bytes");
    return bytes.substr(offset, length);
}

std::optional<double> GltfFile::Number(Json const& object, char const* name)
{
    if (!object.is_object())
        return {};
    auto const found = object.find(name);
    if (found == object.end() || !found->is_number() || !std::isfinite(found->get<double>()))
        return {};
    return found->get<double>();
}

std::optional<std::size_t> GltfFile::Index(Json const& object, char const* name)
{
    constexpr double kMost = 9e15;
    std::optional<double> const number = Number(object, name);
    if (!number || *number < 0.0 || *number > kMost || *number != std::floor(*number))
        return {};
    return static_cast<std::size_t>(*number);
}

std::string GltfFile::Text(Json const& object, char const* name)
{
    if (!object.is_object())
        return {};
    auto const found = object.find(name);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

Json const& GltfFile::Object(Json const& object, char const* name)
{
    if (!object.is_object())
        return kEmptyObject;
    auto const found = object.find(name);
    return found != object.end() && found->is_object() ? *found : kEmptyObject;
}

Json const& GltfFile::Extension(Json const& object, char const* name)
{
    return Object(Object(object, "extensions"), name);
}

std::optional<std::vector<double>> GltfFile::Numbers(Json const& object, char const* name, std::size_t count)
{
    if (!object.is_object())
        return {};
    auto const found = object.find(name);
    if (found == object.end() || !found->is_array() || found->size() != count)
        return {};
    std::vector<double> numbers;
    for (Json const& number : *found)
    {
        if (!number.is_number() || !std::isfinite(number.get<double>()))
            return {};
        numbers.push_back(number.get<double>());
    }
    return numbers;
}

std::optional<std::string> GltfFile::DataOf(std::string const& uri)
{
    std::size_t const comma = uri.find(',');
    if (!uri.starts_with("data:") || comma == std::string::npos ||
        !std::string_view(uri).substr(0, comma).ends_with(";base64"))
        return {};
    std::string data;
    std::uint32_t bits = 0;
    int count = 0;
    for (std::size_t i = comma + 1; i < uri.size(); ++i)
    {
        int const digit = Base64Digit(uri[i]);
        if (digit < 0)
            break;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count >= 8)
            data += static_cast<char>(bits >> (count -= 8));
    }
    return data;
}

std::string GltfFile::PathOf(std::string const& uri)
{
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i)
    {
        bool const isCode =
            uri[i] == '%' && i + 2 < uri.size() && HexDigit(uri[i + 1]) >= 0 && HexDigit(uri[i + 2]) >= 0;
        path += isCode ? static_cast<char>(HexDigit(uri[i + 1]) * 16 + HexDigit(uri[i + 2])) : uri[i];
        i += isCode ? 2 : 0;
    }
    return path;
}

}  // namespace KVR
