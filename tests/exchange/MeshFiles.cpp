#include "tests/exchange/MeshFiles.h"

#include <fmt/format.h>

namespace KVR::Test
{

using nlohmann::json;

namespace
{

ModelFormat FormatOf(std::string const& name)
{
    return name.ends_with(".stl")   ? ModelFormat::kStl
           : name.ends_with(".obj") ? ModelFormat::kObj
           : name.ends_with(".ply") ? ModelFormat::kPly
                                    : ModelFormat::kGltf;
}

}  // namespace

MeshModel ReadMeshBytes(std::string const& name, std::string_view bytes, MeshReadOptions const& options,
                        std::vector<std::pair<std::string, std::string>> const& beside)
{
    if (beside.empty())
        return ReadMeshes(bytes, name.substr(0, name.find('.')), FormatOf(name), options);
    TempFolder const folder;
    folder.Write(name, bytes);
    for (auto const& [other, content] : beside)
        folder.Write(other, content);
    return ReadMeshes(folder.NarrowPathOf(name), FormatOf(name), options);
}

std::string FailureOf(std::string const& name, std::string_view bytes, bool isLenient)
{
    MeshReadOptions options;
    options.isLenient = isLenient;
    try
    {
        ReadMeshBytes(name, bytes, options);
        return {};
    }
    catch (ModelError const& error)
    {
        return error.what();
    }
}

MeshReadOptions Lenient()
{
    MeshReadOptions options;
    options.isLenient = true;
    return options;
}

std::vector<Triangle> BoxTriangles(float x, float y, float z)
{
    std::array<std::array<float, 3>, 8> corners;
    for (std::size_t i = 0; i < 8; ++i)
        corners[i] = {(i & 1) != 0 ? x : 0.0f, (i & 2) != 0 ? y : 0.0f, (i & 4) != 0 ? z : 0.0f};
    constexpr std::array<std::size_t, 4> kSides[] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                                     {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    std::vector<Triangle> triangles;
    for (auto const& side : kSides)
    {
        triangles.push_back({corners[side[0]], corners[side[1]], corners[side[2]]});
        triangles.push_back({corners[side[0]], corners[side[2]], corners[side[3]]});
    }
    return triangles;
}

std::string BinaryStl(std::vector<Triangle> const& triangles, std::string head, std::uint16_t attribute)
{
    head.resize(80, ' ');
    std::string bytes = head + BytesOf(static_cast<std::uint32_t>(triangles.size()));
    for (Triangle const& triangle : triangles)
        bytes += BytesOf(std::array<float, 3>{}) + BytesOf(triangle) + BytesOf(attribute);
    return bytes;
}

std::string TextStl(std::vector<Triangle> const& triangles, std::string const& name)
{
    std::string text = "solid " + name + '\n';
    for (Triangle const& triangle : triangles)
    {
        text += "facet normal 0 0 0\nouter loop\n";
        for (auto const& point : triangle)
            text += fmt::format("vertex {} {} {}\n", point[0], point[1], point[2]);
        text += "endloop\nendfacet\n";
    }
    return text + "endsolid " + name + '\n';
}

GlbBuilder::GlbBuilder()
{
    json["asset"]["version"] = "2.0";
}

int GlbBuilder::View(std::string const& bytes)
{
    buffer.resize((buffer.size() + 3) / 4 * 4, '\0');
    json["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", buffer.size()}, {"byteLength", bytes.size()}});
    buffer += bytes;
    return static_cast<int>(json["bufferViews"].size()) - 1;
}

int GlbBuilder::Add(std::string const& bytes, int componentType, char const* type, std::size_t count, bool isNormalized)
{
    nlohmann::json accessor = {
        {"bufferView", View(bytes)}, {"componentType", componentType}, {"type", type}, {"count", count}};
    if (isNormalized)
        accessor["normalized"] = true;
    json["accessors"].push_back(accessor);
    return static_cast<int>(json["accessors"].size()) - 1;
}

nlohmann::json GlbBuilder::Square(float size)
{
    nlohmann::json primitive;
    primitive["attributes"]["POSITION"] =
        Accessor(std::vector<float>{0, 0, 0, size, 0, 0, size, size, 0, 0, size, 0}, kFloats, "VEC3", 3);
    primitive["indices"] = Accessor(std::vector<std::uint16_t>{0, 1, 2, 0, 2, 3}, kShorts, "SCALAR", 1);
    return primitive;
}

std::string GlbBuilder::Bytes() const
{
    nlohmann::json whole = json;
    std::string binary = buffer;
    binary.resize((binary.size() + 3) / 4 * 4, '\0');
    whole["buffers"] = {{{"byteLength", binary.size()}}};
    std::string text = whole.dump();
    text.resize((text.size() + 3) / 4 * 4, ' ');
    auto const size = [](std::size_t bytes) { return BytesOf(static_cast<std::uint32_t>(bytes)); };
    return "glTF" + size(2) + size(28 + text.size() + binary.size()) + size(text.size()) + "JSON" + text +
           size(binary.size()) + std::string("BIN\0", 4) + binary;
}

}  // namespace KVR::Test
