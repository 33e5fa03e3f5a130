#include "host/export/GltfBuffer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace KVR
{

static_assert(std::endian::native == std::endian::little, "glTF has the smallest byte of a number first");

namespace
{

constexpr float kLargest = std::numeric_limits<float>::max();

float Narrow(double number)
{
    return std::isnan(number) ? 0.0F : static_cast<float>(std::clamp(number, -double{kLargest}, double{kLargest}));
}

}  // namespace

// Makes room at the end of the bytes and answers it; it stays until the next call.
float* GltfBuffer::Room(std::size_t floatCount)
{
    std::size_t const begin = m_bytes.size();
    std::size_t const size = begin + floatCount * sizeof(float);
    if (size > m_bytes.capacity())
        m_bytes.reserve(std::max(size, 2 * m_bytes.capacity()));
    m_bytes.resize(size);
    return reinterpret_cast<float*>(m_bytes.data() + begin);
}

int GltfBuffer::AddView(std::size_t begin, int target)
{
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = begin;
    view.byteLength = m_bytes.size() - begin;
    view.target = target;
    m_model.bufferViews.push_back(std::move(view));
    // The next array begins at a multiple of 4.
    m_bytes.resize((m_bytes.size() + 3) / 4 * 4);
    return static_cast<int>(m_model.bufferViews.size()) - 1;
}

int GltfBuffer::AddAccessor(int view, int componentType, int type, std::size_t count)
{
    tinygltf::Accessor accessor;
    accessor.bufferView = view;
    accessor.componentType = componentType;
    accessor.type = type;
    accessor.count = count;
    m_model.accessors.push_back(std::move(accessor));
    return static_cast<int>(m_model.accessors.size()) - 1;
}

int GltfBuffer::Positions(std::span<Triple const> points)
{
    std::size_t const begin = m_bytes.size();
    float* place = Room(3 * points.size());
    std::array<float, 3> least{kLargest, kLargest, kLargest};
    std::array<float, 3> most{-kLargest, -kLargest, -kLargest};
    for (Triple const& point : points)
        for (std::size_t k = 0; k < 3; ++k)
        {
            float const number = Narrow(point[k]);
            *place++ = number;
            least[k] = std::min(least[k], number);
            most[k] = std::max(most[k], number);
        }
    int const view = AddView(begin, TINYGLTF_TARGET_ARRAY_BUFFER);
    int const index = AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, points.size());
    m_model.accessors.back().minValues.assign(least.begin(), least.end());
    m_model.accessors.back().maxValues.assign(most.begin(), most.end());
    return index;
}

int GltfBuffer::Normals(std::span<Triple const> normals)
{
    std::size_t const begin = m_bytes.size();
    float* place = Room(3 * normals.size());
    for (Triple const& normal : normals)
        for (double const coordinate : normal)
            *place++ = Narrow(coordinate);
    int const view = AddView(begin, TINYGLTF_TARGET_ARRAY_BUFFER);
    return AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, normals.size());
}

int GltfBuffer::Texture(std::span<std::array<float, 2> const> texture)
{
    std::size_t const begin = m_bytes.size();
    float* place = Room(2 * texture.size());
    for (std::array<float, 2> const& vertex : texture)
    {
        *place++ = vertex[0];
        *place++ = 1.0F - vertex[1];
    }
    int const view = AddView(begin, TINYGLTF_TARGET_ARRAY_BUFFER);
    return AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC2, texture.size());
}

int GltfBuffer::Indices(std::span<std::uint32_t const> indices, std::size_t pointCount)
{
    std::size_t const begin = m_bytes.size();
    // The largest number is none: it begins a strip anew.
    bool const isShort = pointCount <= std::numeric_limits<std::uint16_t>::max();
    std::size_t const size = isShort ? sizeof(std::uint16_t) : sizeof(std::uint32_t);
    Room((indices.size() * size + 3) / 4);
    m_bytes.resize(begin + indices.size() * size);
    if (isShort)
    {
        auto* place = reinterpret_cast<std::uint16_t*>(m_bytes.data() + begin);
        for (std::uint32_t const index : indices)
            *place++ = static_cast<std::uint16_t>(index);
    }
    else
        std::memcpy(m_bytes.data() + begin, indices.data(), indices.size() * size);
    int const view = AddView(begin, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
    int const type = isShort ? TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT : TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
    return AddAccessor(view, type, TINYGLTF_TYPE_SCALAR, indices.size());
}

void GltfBuffer::Finish()
{
    if (m_bytes.empty())
        return;
    m_model.buffers.emplace_back();
    m_model.buffers.back().data = std::move(m_bytes);
}

}  // namespace KVR
