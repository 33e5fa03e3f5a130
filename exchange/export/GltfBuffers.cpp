#include "exchange/export/GltfBuffers.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "framework/api/LargePages.h"

namespace KVR
{

namespace
{

// Numbers are converted in pieces that stay in the cache, so that the buffer is all that is written of their size. A
// whole number of points goes into one.
constexpr std::size_t kPiece = 3072;

template <class Value>
void Append(std::vector<unsigned char>& bytes, Value const* values, std::size_t count)
{
    auto const* const first = reinterpret_cast<unsigned char const*>(values);
    bytes.insert(bytes.end(), first, first + count * sizeof(Value));
}

}  // namespace

void GltfBuffers::Reserve(std::size_t bytes)
{
    std::vector<unsigned char>& data = m_model.buffers.front().data;
    if (bytes > data.capacity() - data.size())
    {
        data.reserve(std::max(data.size() + bytes, 2 * data.capacity()));
        AdviseLargePages(data.data() + data.size(), data.capacity() - data.size());
    }
}

int GltfBuffers::BeginView(std::size_t size, int target)
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
    m_model.bufferViews.push_back(std::move(view));
    return static_cast<int>(m_model.bufferViews.size()) - 1;
}

int GltfBuffers::AddView(void const* bytes, std::size_t size, int target)
{
    int const view = BeginView(size, target);
    Append(m_model.buffers.front().data, static_cast<unsigned char const*>(bytes), size);
    return view;
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
    int const view = BeginView(points.size() * sizeof(float), TINYGLTF_TARGET_ARRAY_BUFFER);
    std::array<float, 3> low{};
    for (std::size_t axis = 0; axis < 3; ++axis)
        low[axis] = static_cast<float>(points[axis]);
    std::array<float, 3> high = low;
    std::array<float, kPiece> piece;
    for (std::size_t first = 0; first < points.size(); first += kPiece)
    {
        std::size_t const count = std::min(kPiece, points.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            piece[i] = static_cast<float>(points[first + i]);
        for (std::size_t i = 0; i < count; i += 3)
            for (std::size_t axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], piece[i + axis]);
                high[axis] = std::max(high[axis], piece[i + axis]);
            }
        Append(m_model.buffers.front().data, piece.data(), count);
    }
    int const place = AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, points.size() / 3);
    m_model.accessors.back().minValues.assign(low.begin(), low.end());
    m_model.accessors.back().maxValues.assign(high.begin(), high.end());
    return place;
}

template <class Index>
int GltfBuffers::AddIndexView(std::span<std::uint32_t const> indices, std::size_t firstVertex)
{
    int const view = BeginView(indices.size() * sizeof(Index), TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
    std::array<Index, kPiece> piece;
    for (std::size_t first = 0; first < indices.size(); first += kPiece)
    {
        std::size_t const count = std::min(kPiece, indices.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            piece[i] = static_cast<Index>(indices[first + i] - firstVertex);
        Append(m_model.buffers.front().data, piece.data(), count);
    }
    return view;
}

int GltfBuffers::AddIndices(std::span<std::uint32_t const> indices, std::size_t firstVertex, std::size_t vertexCount)
{
    // The highest number of each width has a meaning of its own.
    bool const isShort = vertexCount < 0xFFFF;
    int const view =
        isShort ? AddIndexView<std::uint16_t>(indices, firstVertex) : AddIndexView<std::uint32_t>(indices, firstVertex);
    return AddAccessor(view, isShort ? TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT : TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT,
                       TINYGLTF_TYPE_SCALAR, indices.size());
}

}  // namespace KVR
