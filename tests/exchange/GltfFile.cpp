#include "tests/exchange/GltfFile.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("there is no file " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class Number>
Number NumberAt(std::string const& bytes, std::size_t place)
{
    Number number{};
    if (place + sizeof number > bytes.size())
        throw std::runtime_error("the file is too short");
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

}  // namespace

GltfFile::GltfFile(std::string const& path)
{
    std::string const file = BytesOf(path);
    if (file.starts_with("glTF"))
    {
        if (NumberAt<std::uint32_t>(file, 8) != file.size())
            throw std::runtime_error("the length is not the file's");
        std::size_t const length = NumberAt<std::uint32_t>(file, 12);
        document = nlohmann::json::parse(file.substr(20, length));
        if (20 + length < file.size())
            m_bytes = file.substr(28 + length);
    }
    else
    {
        document = nlohmann::json::parse(file);
        if (document.contains("buffers"))
            m_bytes = BytesOf(path.substr(0, path.rfind('/') + 1) + document["buffers"][0]["uri"].get<std::string>());
    }
    constexpr Matrix kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (std::size_t const node : document.at("scenes").at(0).at("nodes"))
        Walk(node, kIdentity, "");
}

void GltfFile::Walk(std::size_t index, Matrix const& above, std::string const& path)
{
    nlohmann::json const& node = document.at("nodes").at(index);
    Matrix place = above;
    if (node.contains("matrix"))
    {
        // By columns.
        Matrix const own = node["matrix"].get<Matrix>();
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t column = 0; column < 4; ++column)
            {
                double sum = 0.0;
                for (std::size_t i = 0; i < 4; ++i)
                    sum += above[4 * i + row] * own[4 * column + i];
                place[4 * column + row] = sum;
            }
    }
    std::string const here = path + '/' + node.value("name", "");
    if (node.contains("mesh"))
        for (nlohmann::json const& primitive : document.at("meshes").at(node["mesh"].get<std::size_t>())["primitives"])
        {
            Shown& entry = shown.emplace_back();
            entry.path = here;
            entry.primitive = primitive;
            entry.node = node;
            entry.material = document.at("materials").at(primitive.at("material").get<std::size_t>());
            for (std::vector<double> const& p : Numbers(primitive.at("attributes").at("POSITION")))
            {
                Point& point = entry.points.emplace_back();
                for (std::size_t row = 0; row < 3; ++row)
                    point[row] =
                        place[row] * p.at(0) + place[4 + row] * p.at(1) + place[8 + row] * p.at(2) + place[12 + row];
            }
            if (primitive.contains("indices"))
                for (std::vector<double> const& number : Numbers(primitive["indices"]))
                    entry.indices.push_back(static_cast<std::size_t>(number.at(0)));
        }
    for (std::size_t const child : node.value("children", std::vector<std::size_t>()))
        Walk(child, place, here);
}

std::vector<std::vector<double>> GltfFile::Numbers(nlohmann::json const& accessorIndex) const
{
    nlohmann::json const& accessor = document.at("accessors").at(accessorIndex.get<std::size_t>());
    nlohmann::json const& view = document.at("bufferViews").at(accessor.at("bufferView").get<std::size_t>());
    std::string const type = accessor.at("type");
    std::size_t const width = type == "SCALAR" ? 1 : static_cast<std::size_t>(type.back() - '0');
    std::size_t place = view.value("byteOffset", std::size_t{0}) + accessor.value("byteOffset", std::size_t{0});
    std::vector<std::vector<double>> numbers(accessor.at("count").get<std::size_t>());
    for (std::vector<double>& tuple : numbers)
        for (std::size_t i = 0; i < width; ++i)
            switch (accessor.at("componentType").get<int>())
            {
                case 5123:
                    tuple.push_back(NumberAt<std::uint16_t>(m_bytes, place));
                    place += 2;
                    break;
                case 5125:
                    tuple.push_back(KVR::Test::NumberAt<std::uint32_t>(m_bytes, place));
                    place += 4;
                    break;
                case 5126:
                    tuple.push_back(static_cast<double>(NumberAt<float>(m_bytes, place)));
                    place += 4;
                    break;
                default:
                    throw std::runtime_error("an unknown type of numbers");
            }
    return numbers;
}

bool GltfFile::Has(std::string const& pathEnd) const
{
    for (Shown const& entry : shown)
        if (entry.path.ends_with(pathEnd))
            return true;
    return false;
}

GltfFile::Shown const& GltfFile::At(std::string const& pathEnd) const
{
    for (Shown const& entry : shown)
        if (entry.path.ends_with(pathEnd))
            return entry;
    throw std::runtime_error("nothing is shown at " + pathEnd);
}

}  // namespace KVR::Test
