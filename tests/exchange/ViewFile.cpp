#include "tests/exchange/ViewFile.h"

#include <zlib.h>

#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

std::string DecodedBase64(std::string const& text)
{
    static constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (text.size() % 4 != 0)
        throw std::runtime_error("base64 of an odd length");
    std::string bytes;
    std::uint32_t held = 0;
    std::size_t count = 0;
    for (char const c : text.substr(0, text.find('=')))
    {
        std::size_t const digit = kAlphabet.find(c);
        if (digit == std::string_view::npos)
            throw std::runtime_error("no base64");
        held = (held << 6U) | static_cast<std::uint32_t>(digit);
        if (++count % 4 != 1)
            bytes += static_cast<char>((held >> (6U - 2U * ((count - 1) % 4))) & 0xFFU);
    }
    return bytes;
}

std::string Unpacked(std::string const& packed)
{
    z_stream stream{};
    if (inflateInit2(&stream, 15 + 16) != Z_OK)
        throw std::runtime_error("no zlib");
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string bytes;
    std::array<char, 65536> piece{};
    int status = Z_OK;
    while (status == Z_OK)
    {
        stream.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        status = inflate(&stream, Z_NO_FLUSH);
        bytes.append(piece.data(), piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END || stream.avail_in != 0)
        throw std::runtime_error("no gzip");
    return bytes;
}

std::uint32_t WordAt(std::string const& bytes, std::size_t place)
{
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.substr(place, 4).data(), 4);
    return word;
}

}  // namespace

ViewFile::ViewFile(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    page.assign(std::istreambuf_iterator<char>(file), {});
    glb = Unpacked(DecodedBase64(Packed("kvr-geometry")));
    text = Unpacked(DecodedBase64(Packed("kvr-scene")));
    scene = nlohmann::json::parse(text);
    std::size_t const begin = page.find("<title>") + 7;
    title = page.substr(begin, page.find("</title>", begin) - begin);
    page.erase(begin, title.size());
    if (!glb.starts_with("glTF") || WordAt(glb, 8) != glb.size())
        throw std::runtime_error("no GLB");
    std::size_t const length = WordAt(glb, 12);
    document = nlohmann::json::parse(glb.substr(20, length));
    if (20 + length < glb.size())
        m_numbers = glb.substr(28 + length);
}

// Takes an element's text out of the page.
std::string ViewFile::Packed(std::string const& id)
{
    std::string const tag = "<script type=\"application/octet-stream;base64\" id=\"" + id + "\">";
    std::size_t const begin = page.find(tag);
    if (begin == std::string::npos || page.find(tag, begin + 1) != std::string::npos)
        throw std::runtime_error("the element " + id + " is not there once");
    std::size_t const end = page.find("</script>", begin);
    std::string const packed = page.substr(begin + tag.size(), end - begin - tag.size());
    page.erase(begin + tag.size(), packed.size());
    return packed;
}

std::vector<double> ViewFile::Transform(std::size_t index) const
{
    auto const all = scene.at("transforms").get<std::vector<double>>();
    return {all.begin() + static_cast<std::ptrdiff_t>(12 * index),
            all.begin() + static_cast<std::ptrdiff_t>(12 * index + 12)};
}

nlohmann::json const& ViewFile::Primitive(std::size_t mesh, std::string const& role) const
{
    for (nlohmann::json const& primitive : document.at("meshes").at(mesh).at("primitives"))
        if (primitive.at("extras").at("role") == role)
            return primitive;
    throw std::runtime_error("no primitive of the role " + role);
}

std::string ViewFile::Bytes(std::size_t accessor) const
{
    nlohmann::json const& view =
        document.at("bufferViews").at(document.at("accessors").at(accessor).at("bufferView").get<std::size_t>());
    return m_numbers.substr(view.at("byteOffset"), view.at("byteLength"));
}

std::vector<float> ViewFile::Floats(std::size_t accessor) const
{
    std::string const bytes = Bytes(accessor);
    std::vector<float> numbers(bytes.size() / sizeof(float));
    std::memcpy(numbers.data(), bytes.data(), bytes.size());
    return numbers;
}

std::vector<std::uint32_t> ViewFile::Indices(std::size_t accessor) const
{
    std::string const bytes = Bytes(accessor);
    std::vector<std::uint32_t> numbers(bytes.size() / sizeof(std::uint32_t));
    std::memcpy(numbers.data(), bytes.data(), bytes.size());
    return numbers;
}

bool ViewFile::IsSeen(std::size_t item) const
{
    if (At<int>("items", "visible", item) == 0)
        return false;
    for (auto above = At<int>("items", "occurrence", item); above >= 0;
         above = At<int>("occurrences", "parent", static_cast<std::size_t>(above)))
        if (At<int>("occurrences", "visible", static_cast<std::size_t>(above)) == 0)
            return false;
    return true;
}

std::size_t ViewFile::DrawnTriangles() const
{
    std::size_t count = 0;
    for (std::size_t item = 0; item < scene.at("items").at("occurrence").size(); ++item)
    {
        nlohmann::json const& geometry = scene.at("geometry").at(At<std::size_t>("items", "geometry", item));
        if (!geometry.contains("mesh") || !IsSeen(item))
            continue;
        for (nlohmann::json const& primitive :
             document.at("meshes").at(geometry.at("mesh").get<std::size_t>()).at("primitives"))
            if (primitive.at("mode") == 4)
                count += document.at("accessors")
                             .at(primitive.at("indices").get<std::size_t>())
                             .at("count")
                             .get<std::size_t>() /
                         3;
    }
    return count;
}

}  // namespace KVR::Test
