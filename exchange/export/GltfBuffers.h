#pragma once

#include <tiny_gltf.h>

#include <cstdint>
#include <span>

namespace KVR
{

/// Adds numbers and images to the one buffer of a glTF document. Each operation answers the index of what it adds.
class GltfBuffers
{
public:
    explicit GltfBuffers(tinygltf::Model& model) : m_model(model) {}

    /// Throws std::runtime_error beyond 4 GiB, which glTF cannot hold. A target of 0 is none.
    int AddView(void const* bytes, std::size_t size, int target);
    /// Makes room for so many bytes that are to come, which saves moving all that is there as it grows.
    void Reserve(std::size_t bytes);
    /// An accessor of TINYGLTF_TYPE_SCALAR, VEC2 or VEC3.
    int AddFloats(std::span<float const> values, int type);
    /// An accessor with the range of the points.
    int AddPoints(std::span<double const> points);
    /// An accessor of indices of so many vertices, counted from the first one.
    int AddIndices(std::span<std::uint32_t const> indices, std::size_t firstVertex, std::size_t vertexCount);

private:
    /// A view of so many bytes, which the caller appends.
    int BeginView(std::size_t size, int target);
    template <class Index>
    int AddIndexView(std::span<std::uint32_t const> indices, std::size_t firstVertex);
    int AddAccessor(int view, int componentType, int type, std::size_t count);

    tinygltf::Model& m_model;
};

}  // namespace KVR
