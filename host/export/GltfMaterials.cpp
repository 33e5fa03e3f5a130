#include "host/export/GltfMaterials.h"

#include <algorithm>
#include <cmath>

#include "host/export/DefaultColors.h"

namespace KVR
{

namespace
{

// Of styles that say nothing of it: neither metal nor mirror.
constexpr double kMetallic = 0.0;
constexpr double kRoughness = 0.6;

}  // namespace

double LinearOf(double fraction)
{
    return fraction <= 0.04045 ? fraction / 12.92 : std::pow((fraction + 0.055) / 1.055, 2.4);
}

GltfMaterials::GltfMaterials(ExportTask const& task, tinygltf::Model& model) : m_task(task), m_model(model)
{
    DefaultColors const colors(task.producer);
    m_surface.diffuse = colors.surface;
    m_curve.diffuse = colors.curve;
}

int GltfMaterials::Of(std::string const& styleId, bool isCurve)
{
    auto const known = m_styles.find(styleId);
    ModelStyle const* const style = m_task.scene.StyleOf(styleId);
    if (!style || !style->diffuse)
    {
        int& index = isCurve ? m_curveIndex : m_surfaceIndex;
        if (index < 0)
            index = Add(isCurve ? m_curve : m_surface);
        return index;
    }
    if (known != m_styles.end())
        return known->second;
    int const index = Add(*style);
    m_styles.emplace(styleId, index);
    return index;
}

int GltfMaterials::Add(ModelStyle const& style)
{
    tinygltf::Material material;
    material.name = style.label.empty() ? style.id : style.label;
    material.doubleSided = true;
    tinygltf::PbrMetallicRoughness& pbr = material.pbrMetallicRoughness;
    std::array<double, 3> const color = style.diffuse.value_or(std::array<double, 3>{1.0, 1.0, 1.0});
    pbr.baseColorFactor = {LinearOf(color[0]), LinearOf(color[1]), LinearOf(color[2]), style.opacity};
    pbr.metallicFactor = style.metallic.value_or(kMetallic);
    pbr.roughnessFactor = style.roughness.value_or(kRoughness);
    if (style.emission)
        material.emissiveFactor = {LinearOf((*style.emission)[0]), LinearOf((*style.emission)[1]),
                                   LinearOf((*style.emission)[2])};
    if (style.opacity < 1.0)
        material.alphaMode = "BLEND";
    if (!style.id.empty())
        material.extras = tinygltf::Value(tinygltf::Value::Object{{"id", tinygltf::Value(style.id)}});
    m_model.materials.push_back(std::move(material));
    return static_cast<int>(m_model.materials.size()) - 1;
}

}  // namespace KVR
