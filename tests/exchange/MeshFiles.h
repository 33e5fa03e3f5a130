#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/meshes/MeshReading.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A file of meshes with these bytes, read; further files stand in the same folder.
MeshModel ReadMeshBytes(std::string const& name, std::string_view bytes, MeshReadOptions const& options = {},
                        std::vector<std::pair<std::string, std::string>> const& beside = {});

/// What the reading of a file throws; empty for one that is read.
std::string FailureOf(std::string const& name, std::string_view bytes, bool isLenient = false);

MeshReadOptions Lenient();

using Triangle = std::array<std::array<float, 3>, 3>;

/// The twelve triangles of a box from the origin, seen from outside counter-clockwise.
std::vector<Triangle> BoxTriangles(float x, float y, float z);

/// The bytes of a value, as they are in memory.
template <class Value>
std::string BytesOf(Value const& value)
{
    return std::string(reinterpret_cast<char const*>(&value), sizeof value);
}

/// STL with a head that counts the triangles; `attribute` stands behind each.
std::string BinaryStl(std::vector<Triangle> const& triangles, std::string head = "box", std::uint16_t attribute = 0);
std::string TextStl(std::vector<Triangle> const& triangles, std::string const& name = "box");

/// Builds a GLB file: JSON with views of one buffer.
class GlbBuilder
{
public:
    GlbBuilder();

    /// A view with these values, and an accessor of it.
    template <class Value>
    int Accessor(std::vector<Value> const& values, int componentType, char const* type, std::size_t width,
                 bool isNormalized = false)
    {
        std::string bytes;
        for (Value const& value : values)
            bytes += BytesOf(value);
        return Add(bytes, componentType, type, values.size() / width, isNormalized);
    }
    int View(std::string const& bytes);
    /// A square in the plane of x and y, of two triangles that share two points; with indices.
    nlohmann::json Square(float size = 1.0f);

    nlohmann::json json;
    std::string buffer;

    std::string Bytes() const;

private:
    int Add(std::string const& bytes, int componentType, char const* type, std::size_t count, bool isNormalized);
};

constexpr int kFloats = 5126;
constexpr int kBytes = 5121;
constexpr int kShorts = 5123;

}  // namespace KVR::Test
