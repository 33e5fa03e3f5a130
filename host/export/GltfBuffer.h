#pragma once

#include <tiny_gltf.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/export/Triangulation.h"

namespace KVR
{

/// Appends arrays to the buffer of a glTF model, each with its accessor.
class GltfBuffer
{
public:
    explicit GltfBuffer(tinygltf::Model& model) : m_model(model) {}

    /// Answer the index of the accessor. Numbers become those of 4 bytes.
    int Positions(std::span<Triple const> points);
    int Normals(std::span<Triple const> normals);
    /// Counts v from the top down, as glTF does.
    int Texture(std::span<std::array<float, 2> const> texture);
    /// In 2 bytes each where they fit.
    int Indices(std::span<std::uint32_t const> indices, std::size_t pointCount);

    /// Gives the bytes to the model.
    void Finish();

private:
    float* Room(std::size_t floatCount);
    int AddView(std::size_t begin, int target);
    int AddAccessor(int view, int componentType, int type, std::size_t count);

    tinygltf::Model& m_model;
    std::vector<unsigned char> m_bytes;
};

}  // namespace KVR
