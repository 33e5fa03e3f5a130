#include "exchange/export/GltfMaterials.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

#include "exchange/conventions/GltfDetails.h"
#include "exchange/export/ImageFile.h"
#include "framework/api/kvr_api.h"
#include "output/SafeText.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

// Of a style that says nothing of it.
constexpr double kRoughness = 0.6;
constexpr double kCutoff = 0.5;

using tinygltf::Value;

double Linear(double fraction)
{
    return fraction <= 0.04045 ? fraction / 12.92 : std::pow((fraction + 0.055) / 1.055, 2.4);
}

std::string ExtensionText(IObject const& object, char const* typeId)
{
    ExtensionDataContent content;
    return object.ExtensionDataByTypeId(UTF8String(typeId), content) == kIsValueSpecified_Yes ? content.Data().Value()
                                                                                              : std::string();
}

// How glTF shows it, where the scene says; a transparent one is blended unless it says.
void AddDetails(tinygltf::Material& material, SceneStyle const* style, tinygltf::Model& model)
{
    std::string const text = style && style->object ? ExtensionText(*style->object, kMaterialTypeId) : std::string();
    GltfMaterialDetails const details = GltfMaterialDetails::Of(text);
    // Where the scene speaks of glTF, what it does not say is glTF's default.
    material.doubleSided = details.doubleSided.value_or(text.empty());
    material.alphaMode = details.alphaMode.value_or(style && style->opacity < 1.0 ? "BLEND" : "OPAQUE");
    if (material.alphaMode == "MASK")
        material.alphaCutoff = details.alphaCutoff.value_or(kCutoff);
    if (details.unlit.value_or(false))
    {
        UseExtension(model, "KHR_materials_unlit");
        material.extensions["KHR_materials_unlit"] = Value(Value::Object());
    }
}

}  // namespace

void UseExtension(tinygltf::Model& model, std::string const& name)
{
    std::vector<std::string>& used = model.extensionsUsed;
    if (std::find(used.begin(), used.end(), name) == used.end())
        used.push_back(name);
}

int GltfMaterials::Of(SceneStyle const* style, GltfSurface surface)
{
    bool const hasColor = style && style->diffuse;
    bool const isTextured = surface == GltfSurface::kTextured && style && style->object;
    auto const [entry, isNew] =
        m_materials.try_emplace({style, !hasColor && surface == GltfSurface::kCurve, isTextured}, -1);
    if (!isNew)
        return entry->second;
    return entry->second =
               Make(style, !isTextured && surface == GltfSurface::kTextured ? GltfSurface::kPlain : surface);
}

int GltfMaterials::Make(SceneStyle const* style, GltfSurface surface)
{
    tinygltf::Material material;
    Scene const& scene = m_task.scene;
    std::array<double, 3> color =
        surface == GltfSurface::kCurve ? scene.DefaultCurveColor() : scene.DefaultSurfaceColor();
    if (style)
    {
        material.name = std::string(style->label.empty() ? style->id : style->label);
        if (style->diffuse)
            color = *style->diffuse;
        if (style->emission)
            for (double const fraction : *style->emission)
                material.emissiveFactor.push_back(Linear(fraction));
        Value::Object extras;
        extras["id"] = Value(std::string(style->id));
        material.extras = Value(extras);
    }
    else
        material.name = "default";
    material.pbrMetallicRoughness.baseColorFactor = {Linear(color[0]), Linear(color[1]), Linear(color[2]),
                                                     style ? style->opacity : 1.0};
    material.pbrMetallicRoughness.metallicFactor = style && style->metallic ? *style->metallic : 0.0;
    material.pbrMetallicRoughness.roughnessFactor = style && style->roughness ? *style->roughness : kRoughness;
    AddDetails(material, style, m_model);
    if (surface == GltfSurface::kTextured)
    {
        AddTextures(material, *style);
        // Without any it is the one of surfaces without texture.
        if (material.pbrMetallicRoughness.baseColorTexture.index < 0 && material.normalTexture.index < 0)
            return Of(style, GltfSurface::kPlain);
    }
    m_model.materials.push_back(std::move(material));
    return static_cast<int>(m_model.materials.size()) - 1;
}

void GltfMaterials::AddTextures(tinygltf::Material& material, SceneStyle const& style)
{
    UTF8String id;
    if (style.object->DiffuseTexture(id) == kIsValueSpecified_Yes)
        material.pbrMetallicRoughness.baseColorTexture.index = TextureOf(id);
    UTF8String relief;
    if (style.object->BumpMap(relief) == kIsValueSpecified_Yes)
        material.normalTexture.index = TextureOf(relief);
}

int GltfMaterials::TextureOf(UTF8String const& id)
{
    if (id.IsEmpty())
        return -1;
    auto const [entry, isNew] = m_textures.try_emplace(id.Value(), -1);
    if (isNew)
        entry->second = MakeTexture(id);
    return entry->second;
}

int GltfMaterials::MakeTexture(UTF8String const& id)
{
    auto const* const object = dynamic_cast<IMaterialTexture const*>(m_task.producer.Load(id));
    ImageFile const file = object ? ImageFile::Of(*object, m_task.folder) : ImageFile();
    if (file.mimeType.empty())
    {
        std::string const name = file.name.empty() ? id.Value() : file.name;
        m_task.remarks.push_back("the image of a texture, " + Escaped(name) +
                                 (file.bytes.empty() ? ", is not there" : ", is neither PNG nor JPEG"));
        return -1;
    }
    tinygltf::Image image;
    image.name = file.name;
    image.mimeType = file.mimeType;
    if (m_embedsImages)
        image.bufferView = m_buffers.AddView(file.bytes.data(), file.bytes.size(), 0);
    else
        image.image.assign(file.bytes.begin(), file.bytes.end());
    tinygltf::Texture texture;
    texture.name = UTF8String(object->Label()).Value();
    texture.source = static_cast<int>(m_model.images.size());
    texture.sampler = SamplerOf(*object);
    m_model.images.push_back(std::move(image));
    m_model.textures.push_back(std::move(texture));
    return static_cast<int>(m_model.textures.size()) - 1;
}

// Without one, glTF repeats a texture and leaves the filters open.
int GltfMaterials::SamplerOf(IMaterialTexture const& texture)
{
    auto const details = GltfSamplerDetails::Of(ExtensionText(texture, kSamplerTypeId));
    if (details == GltfSamplerDetails())
        return -1;
    tinygltf::Sampler sampler;
    sampler.wrapS = details.wrapS.value_or(TINYGLTF_TEXTURE_WRAP_REPEAT);
    sampler.wrapT = details.wrapT.value_or(TINYGLTF_TEXTURE_WRAP_REPEAT);
    sampler.magFilter = details.magFilter.value_or(-1);
    sampler.minFilter = details.minFilter.value_or(-1);
    m_model.samplers.push_back(std::move(sampler));
    return static_cast<int>(m_model.samplers.size()) - 1;
}

}  // namespace KVR
