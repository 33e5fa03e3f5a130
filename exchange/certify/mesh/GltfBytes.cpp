#include "exchange/certify/mesh/GltfBytes.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "output/JsonDepth.h"

namespace KVR::Certification
{

namespace
{

using nlohmann::json;

constexpr char const* kChunkEnds = "a chunk of it ends early";
constexpr char const* kListsGoBeyond = "its lists go beyond its bytes";
// A list of zeros has no bytes that would bound it.
constexpr std::size_t kMostOfNothing = 10'000'000;

std::string BytesOfFile(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file.good() && !file.eof())
        throw std::runtime_error("it cannot be read");
    return bytes;
}

json JsonOf(std::string_view text)
{
    json document = IsShallowJson(text) ? json::parse(text, nullptr, false) : json(json::value_t::discarded);
    if (document.is_discarded())
        throw std::runtime_error("its JSON makes no sense");
    return document;
}

// Of "data:TYPE;base64,BYTES".
std::string BytesOfData(std::string const& uri)
{
    std::size_t const comma = uri.find(',');
    if (comma == std::string::npos || uri.substr(0, comma).find("base64") == std::string::npos)
        throw std::runtime_error("a text in it is not in base 64");
    constexpr std::string_view kSigns = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    std::uint32_t bits = 0;
    int count = 0;
    for (char const sign : std::string_view(uri).substr(comma + 1))
    {
        std::size_t const value = kSigns.find(sign);
        if (value == std::string_view::npos)
            break;
        bits = (bits << 6U) | static_cast<std::uint32_t>(value);
        count += 6;
        if (count < 8)
            continue;
        count -= 8;
        bytes += static_cast<char>((bits >> static_cast<unsigned>(count)) & 255U);
    }
    return bytes;
}

// A path in a URI: "%20" is a blank.
std::string Decoded(std::string const& uri)
{
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i)
    {
        unsigned byte = 0;
        char const* const begin = uri.data() + i + 1;
        if (uri[i] == '%' && i + 2 < uri.size() && std::from_chars(begin, begin + 2, byte, 16).ptr == begin + 2)
        {
            path += static_cast<char>(byte);
            i += 2;
        }
        else
            path += uri[i];
    }
    return path;
}

std::uint32_t WordAt(std::string const& bytes, std::size_t place)
{
    std::uint32_t word = 0;
    if (bytes.size() < 4 || place > bytes.size() - 4)
        throw std::runtime_error(kChunkEnds);
    std::memcpy(&word, bytes.data() + place, sizeof word);
    return word;
}

template <class Number>
double NumberAt(char const* bytes, bool isFraction)
{
    Number number{};
    std::memcpy(&number, bytes, sizeof number);
    double const value = static_cast<double>(number);
    return isFraction ? std::max(value / static_cast<double>(std::numeric_limits<Number>::max()), -1.0) : value;
}

double NumberOfType(char const* bytes, int type, bool isFraction)
{
    switch (type)
    {
        case 5120:
            return NumberAt<std::int8_t>(bytes, isFraction);
        case 5121:
            return NumberAt<std::uint8_t>(bytes, isFraction);
        case 5122:
            return NumberAt<std::int16_t>(bytes, isFraction);
        case 5123:
            return NumberAt<std::uint16_t>(bytes, isFraction);
        case 5125:
            return NumberAt<std::uint32_t>(bytes, isFraction);
        default:
            return NumberAt<float>(bytes, false);
    }
}

}  // namespace

GltfBytes::GltfBytes(std::string const& path)
{
    std::string const bytes = BytesOfFile(path);
    std::string own;
    if (bytes.compare(0, 4, "glTF") != 0)
        m_json = JsonOf(bytes);
    else
    {
        std::size_t const length = WordAt(bytes, 12);
        if (bytes.size() < 20 || length > bytes.size() - 20)
            throw std::runtime_error(kChunkEnds);
        m_json = JsonOf(std::string_view(bytes).substr(20, length));
        if (std::size_t const next = 20 + length; next + 8 <= bytes.size())
        {
            if (WordAt(bytes, next) > bytes.size() - next - 8)
                throw std::runtime_error(kChunkEnds);
            own = bytes.substr(next + 8, WordAt(bytes, next));
        }
    }
    for (json const& buffer : List("buffers"))
    {
        std::string const uri = buffer.value("uri", "");
        if (uri.starts_with("data:"))
            m_buffers.push_back(BytesOfData(uri));
        else
            m_buffers.push_back(uri.empty() ? own
                                            : BytesOfFile(std::filesystem::path(path).parent_path() / Decoded(uri)));
    }
}

json const& GltfBytes::List(char const* name) const
{
    static json const none = json::array();
    auto const found = m_json.find(name);
    return found == m_json.end() ? none : *found;
}

json const& GltfBytes::At(char const* list, json const& index) const
{
    return List(list).at(index.get<std::size_t>());
}

std::vector<double> GltfBytes::Numbers(json const& index, std::size_t width) const
{
    json const& accessor = At("accessors", index);
    std::size_t const count = accessor.at("count");
    std::vector<double> numbers;
    if (accessor.contains("bufferView"))
        numbers = Run(accessor, accessor.at("componentType"), width, count);
    else if (count > kMostOfNothing)
        throw std::runtime_error(kListsGoBeyond);
    else
        numbers.resize(count * width, 0.0);
    auto const sparse = accessor.find("sparse");
    if (sparse == accessor.end())
        return numbers;
    std::size_t const changed = sparse->at("count");
    json const& places = sparse->at("indices");
    std::vector<double> const at = Run(places, places.at("componentType"), 1, changed);
    std::vector<double> const values = Run(sparse->at("values"), accessor.at("componentType"), width, changed);
    for (std::size_t i = 0; i < at.size(); ++i)
        for (std::size_t k = 0; k < width; ++k)
            numbers.at(static_cast<std::size_t>(at[i]) * width + k) = values[i * width + k];
    return numbers;
}

std::vector<double> GltfBytes::Run(json const& place, int type, std::size_t width, std::size_t count) const
{
    json const& view = At("bufferViews", place.at("bufferView"));
    std::string const& bytes = m_buffers.at(view.at("buffer").get<std::size_t>());
    std::size_t const size = type <= 5121 ? 1 : type <= 5123 ? 2 : 4;
    std::size_t const step = view.value("byteStride", width * size);
    std::size_t const begin = view.value("byteOffset", std::size_t{0}) + place.value("byteOffset", std::size_t{0});
    if (begin > bytes.size() || count > bytes.size() ||
        (count > 0 && (step > bytes.size() || (count - 1) * step + width * size > bytes.size() - begin)))
        throw std::runtime_error(kListsGoBeyond);
    std::vector<double> numbers;
    numbers.reserve(count * width);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < width; ++k)
            numbers.push_back(
                NumberOfType(bytes.data() + begin + i * step + k * size, type, place.value("normalized", false)));
    return numbers;
}

}  // namespace KVR::Certification
