#include "exchange/export/GltfBuffers.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

namespace KVR
{

int GltfBuffers::AddView(void const* bytes, std::size_t size, int target)
{
    constexpr std::size_t kMostBytes = 0xFFFFFFF0;
    std::vector<unsigned char>& data = m_model.buffers.front().data;
    data.resize((data.size() + 3) / 4 * 4);
    if (size > kMostBytes - data.size())
        throw std::runtime_error("its geometry takes more than 4 GiB, which glTF cannot hold; --only exports a part");
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = data.size();
    view.byteLength = size;
    view.target = target;
    auto const* const first = static_cast<unsigned char const*>(bytes);
    data.insert(data.end(), first, first + size);
    m_model.bufferViews.push_back(std::move(view));
    return static_cast<int>(m_model.bufferViews.size()) - 1;
}

int GltfBuffers::AddAccessor(int view, int componentType, int type, std::size_t count)
{
    tinygltf::Accessor accessor;
    accessor.bufferView = view;
    accessor.componentType = componentType;
    accessor.type = type;
    accessor.count = count;
    m_model.accessors.push_back(std::move(accessor));
    return static_cast<int>(m_model.accessors.size()) - 1;
}

int GltfBuffers::AddFloats(std::span<float const> values, int type)
{
    std::size_t const width = type == TINYGLTF_TYPE_VEC3 ? 3 : type == TINYGLTF_TYPE_VEC2 ? 2 : 1;
    int const view = AddView(values.data(), values.size_bytes(), TINYGLTF_TARGET_ARRAY_BUFFER);
    return AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, type, values.size() / width);
}

int GltfBuffers::AddPoints(std::span<double const> points)
{
    std::vector<float> values;
    values.reserve(points.size());
    for (double const x : points)
        values.push_back(static_cast<float>(x));
    int const place = AddFloats(values, TINYGLTF_TYPE_VEC3);
    std::array<float, 3> low{values[0], values[1], values[2]};
    std::array<float, 3> high = low;
    for (std::size_t i = 3; i < values.size(); i += 3)
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            low[axis] = std::min(low[axis], values[i + axis]);
            high[axis] = std::max(high[axis], values[i + axis]);
        }
    m_model.accessors.back().minValues.assign(low.begin(), low.end());
    m_model.accessors.back().maxValues.assign(high.begin(), high.end());
    return place;
}

int GltfBuffers::AddIndices(std::span<std::uint32_t const> indices, std::size_t vertexCount)
{
    auto const add = [&]<class Index>(std::vector<Index> list, int componentType)
    {
        list.reserve(indices.size());
        for (std::uint32_t const index : indices)
            list.push_back(static_cast<Index>(index));
        int const view = AddView(list.data(), list.size() * sizeof(Index), TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        return AddAccessor(view, componentType, TINYGLTF_TYPE_SCALAR, indices.size());
    };
    // The highest number of each width has a meaning of its own.
    return vertexCount < 0xFFFF ? add(std::vector<std::uint16_t>(), TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT)
                                : add(std::vector<std::uint32_t>(), TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT);
}

}  // namespace KVR
