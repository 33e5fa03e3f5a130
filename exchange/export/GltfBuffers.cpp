#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "exchange/export/GltfDocument.h"
#include "framework/api/kvr_api.h"

// Numbers and materials of a glTF document.
namespace KVR
{

namespace
{

// Of a style that says nothing of it.
constexpr double kRoughness = 0.6;

using tinygltf::Value;

double Linear(double fraction)
{
    return fraction <= 0.04045 ? fraction / 12.92 : std::pow((fraction + 0.055) / 1.055, 2.4);
}

}  // namespace

int GltfDocument::AddView(void const* bytes, std::size_t size, int target)
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

int GltfDocument::AddFloats(std::span<float const> values, int type)
{
    std::size_t const width = type == TINYGLTF_TYPE_VEC3 ? 3 : 2;
    tinygltf::Accessor accessor;
    accessor.bufferView = AddView(values.data(), values.size_bytes(), TINYGLTF_TARGET_ARRAY_BUFFER);
    accessor.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
    accessor.type = type;
    accessor.count = values.size() / width;
    m_model.accessors.push_back(std::move(accessor));
    return static_cast<int>(m_model.accessors.size()) - 1;
}

int GltfDocument::AddPoints(std::span<double const> points)
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

int GltfDocument::AddIndices(std::span<std::uint32_t const> indices, std::size_t firstVertex, std::size_t vertexCount)
{
    tinygltf::Accessor accessor;
    auto const add = [&]<class Index>(std::vector<Index> list, int componentType)
    {
        list.reserve(indices.size());
        for (std::uint32_t const index : indices)
            list.push_back(static_cast<Index>(index - firstVertex));
        accessor.bufferView = AddView(list.data(), list.size() * sizeof(Index), TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        accessor.componentType = componentType;
    };
    // The highest number of each width has a meaning of its own.
    if (vertexCount < 0xFFFF)
        add(std::vector<std::uint16_t>(), TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT);
    else
        add(std::vector<std::uint32_t>(), TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT);
    accessor.type = TINYGLTF_TYPE_SCALAR;
    accessor.count = indices.size();
    m_model.accessors.push_back(std::move(accessor));
    return static_cast<int>(m_model.accessors.size()) - 1;
}

int GltfDocument::MaterialOf(SceneStyle const* style, bool isCurve)
{
    bool const hasColor = style && style->diffuse;
    auto const [entry, isNew] =
        m_materials.try_emplace({style, !hasColor && isCurve}, static_cast<int>(m_model.materials.size()));
    if (!isNew)
        return entry->second;
    tinygltf::Material material;
    material.doubleSided = true;
    std::array<double, 3> color = isCurve ? m_scene.DefaultCurveColor() : m_scene.DefaultSurfaceColor();
    double opacity = 1.0;
    if (style)
    {
        material.name = std::string(style->label.empty() ? style->id : style->label);
        if (style->diffuse)
            color = *style->diffuse;
        opacity = style->opacity;
        if (style->emission)
            for (double const fraction : *style->emission)
                material.emissiveFactor.push_back(Linear(fraction));
        Value::Object extras;
        extras["id"] = Value(std::string(style->id));
        material.extras = Value(extras);
    }
    else
        material.name = "default";
    material.pbrMetallicRoughness.baseColorFactor = {Linear(color[0]), Linear(color[1]), Linear(color[2]), opacity};
    material.pbrMetallicRoughness.metallicFactor = style && style->metallic ? *style->metallic : 0.0;
    material.pbrMetallicRoughness.roughnessFactor = style && style->roughness ? *style->roughness : kRoughness;
    if (opacity < 1.0)
        material.alphaMode = "BLEND";
    m_model.materials.push_back(std::move(material));
    return entry->second;
}

}  // namespace KVR
