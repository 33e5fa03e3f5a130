#include "exchange/certify/mesh/GltfBytes.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KVR::Certification
{

namespace
{

using nlohmann::json;

constexpr char const* kChunkEnds = "a chunk of it ends early";

std::string BytesOfFile(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file.good() && !file.eof())
        throw std::runtime_error("it cannot be read");
    return bytes;
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
        m_json = json::parse(bytes);
    else
    {
        std::size_t const length = WordAt(bytes, 12);
        if (length > bytes.size() - 20)
            throw std::runtime_error(kChunkEnds);
        m_json = json::parse(bytes.begin() + 20, bytes.begin() + 20 + static_cast<std::ptrdiff_t>(length));
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
        if (uri.compare(0, 5, "data:") == 0)
            throw std::runtime_error("its numbers stand in texts");
        m_buffers.push_back(uri.empty() ? own : BytesOfFile(std::filesystem::path(path).parent_path() / uri));
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
    json const& view = At("bufferViews", accessor.at("bufferView"));
    std::string const& bytes = m_buffers.at(view.at("buffer").get<std::size_t>());
    int const type = accessor.at("componentType");
    std::size_t const size = type <= 5121 ? 1 : type <= 5123 ? 2 : 4;
    std::size_t const count = accessor.at("count");
    std::size_t const step = view.value("byteStride", width * size);
    std::size_t const begin = view.value("byteOffset", std::size_t{0}) + accessor.value("byteOffset", std::size_t{0});
    if (begin > bytes.size() || count > bytes.size() ||
        (count > 0 && (step > bytes.size() || (count - 1) * step + width * size > bytes.size() - begin)))
        throw std::runtime_error("its lists go beyond its bytes");
    std::vector<double> numbers;
    numbers.reserve(count * width);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < width; ++k)
            numbers.push_back(
                NumberOfType(bytes.data() + begin + i * step + k * size, type, accessor.value("normalized", false)));
    return numbers;
}

}  // namespace KVR::Certification
