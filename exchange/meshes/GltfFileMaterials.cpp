#include "exchange/meshes/GltfFileMaterials.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "exchange/meshes/FileBytes.h"

namespace KVR
{

namespace
{

using Json = GltfFile::Json;

MeshModel::Color LinearOf(Json const& object, char const* name, double otherwise)
{
    MeshModel::Color color{otherwise, otherwise, otherwise, 1.0};
    for (std::size_t const count : {std::size_t{3}, std::size_t{4}})
        if (auto const numbers = GltfFile::Numbers(object, name, count))
            std::transform(numbers->begin(), numbers->end(), color.begin(),
                           [](double x) { return std::clamp(x, 0.0, 1.0); });
    return color;
}

bool IsTrue(Json const& object, char const* name)
{
    return object.is_object() && object.contains(name) && object[name] == true;
}

// What the scene's styles have no place for.
std::string DetailsOf(Json const& material, std::string const& alphaMode)
{
    Json details = Json::object();
    if (alphaMode == "MASK" || alphaMode == "BLEND")
        details["alphaMode"] = alphaMode;
    if (alphaMode == "MASK")
        details["alphaCutoff"] = GltfFile::Number(material, "alphaCutoff").value_or(0.5);
    if (IsTrue(material, "doubleSided"))
        details["doubleSided"] = true;
    if (GltfFile::Object(material, "extensions").contains("KHR_materials_unlit"))
        details["unlit"] = true;
    return details.empty() ? std::string() : details.dump();
}

}  // namespace

GltfFileMaterials::GltfFileMaterials(GltfFile& file) : m_file(file), m_model(file.Reading().model)
{
    m_images.resize(file.List("images").size());
    for (Json const& material : file.List("materials"))
        Read(material);
}

MeshModel::Color GltfFileMaterials::Srgb(MeshModel::Color const& linear)
{
    MeshModel::Color color = linear;
    for (std::size_t i = 0; i < 3; ++i)
        color[i] = linear[i] <= 0.0031308 ? 12.92 * linear[i]
                   : linear[i] < 1.0      ? 1.055 * std::pow(linear[i], 1.0 / 2.4) - 0.055
                                          : 1.0;
    return color;
}

void GltfFileMaterials::Read(Json const& material)
{
    Json const& pbr = GltfFile::Object(material, "pbrMetallicRoughness");
    std::string const alphaMode = GltfFile::Text(material, "alphaMode");
    MeshModel::Color linear = LinearOf(pbr, "baseColorFactor", 1.0);
    if (alphaMode != "BLEND" && alphaMode != "MASK")
        linear[3] = 1.0;
    m_linear.push_back(linear);
    MeshModel::Material result;
    result.name = GltfFile::Text(material, "name");
    result.color = Srgb(linear);
    MeshModel::Color const emission = LinearOf(material, "emissiveFactor", 0.0);
    if (emission[0] + emission[1] + emission[2] > 0.0)
        result.emission = Srgb(emission);
    auto const factor = [&](char const* name)
    { return std::clamp(GltfFile::Number(pbr, name).value_or(1.0), 0.0, 1.0); };
    result.metallicRoughness = {factor("metallicFactor"), factor("roughnessFactor")};
    result.colorTexture = TextureOf(GltfFile::Object(pbr, "baseColorTexture"));
    result.bumpTexture = TextureOf(GltfFile::Object(material, "normalTexture"));
    result.details = DetailsOf(material, alphaMode);
    CountOthers(material, pbr);
    m_model.materials.push_back(std::move(result));
}

void GltfFileMaterials::CountOthers(Json const& material, Json const& pbr)
{
    Losses& losses = m_model.losses;
    std::string const name = m_file.NameOf("materials", m_model.materials.size());
    for (auto const& [owner, texture] :
         {std::pair{&pbr, "metallicRoughnessTexture"}, {&material, "emissiveTexture"}, {&material, "occlusionTexture"}})
        if (!GltfFile::Object(*owner, texture).empty())
            losses.AddItem("textures of roughness, emission and occlusion", std::string(texture) + " of " + name);
    for (auto const& [extension, content] : GltfFile::Object(material, "extensions").items())
        if (extension != "KHR_materials_unlit")
            losses.AddItem("extensions of materials", fmt::format("{} of {}", extension, name));
    if (material.is_object() && material.contains("extras"))
        losses.AddItem("extras of materials", name);
}

std::uint32_t GltfFileMaterials::TextureOf(Json const& info)
{
    Json const* const entry = m_file.Entry("textures", info, "index");
    if (!entry)
        return MeshModel::kNone;
    Json const& transform = GltfFile::Extension(info, "KHR_texture_transform");
    if (GltfFile::Index(transform, "texCoord").value_or(GltfFile::Index(info, "texCoord").value_or(0)) != 0)
    {
        m_model.losses.AddItem("textures in a second set of coordinates",
                               m_file.NameOf("materials", m_model.materials.size()));
        return MeshModel::kNone;
    }
    std::optional<std::size_t> source = GltfFile::Index(*entry, "source");
    for (char const* const extension : {"EXT_texture_webp", "KHR_texture_basisu"})
        if (auto const other = GltfFile::Index(GltfFile::Extension(*entry, extension), "source"))
            source = source.value_or(*other);
    std::optional<std::size_t> const image = source ? ImageOf(*source) : std::nullopt;
    if (!image)
        return MeshModel::kNone;
    MeshModel::Texture texture;
    texture.image = *image;
    if (auto const offset = GltfFile::Numbers(transform, "offset", 2))
        texture.offset = {(*offset)[0], (*offset)[1]};
    if (auto const scale = GltfFile::Numbers(transform, "scale", 2))
        texture.scale = {(*scale)[0], (*scale)[1]};
    texture.rotation = GltfFile::Number(transform, "rotation");
    if (Json const* const sampler = m_file.Entry("samplers", *entry, "sampler"))
    {
        Json values = Json::object();
        for (char const* const name : {"magFilter", "minFilter", "wrapS", "wrapT"})
            if (auto const value = GltfFile::Index(*sampler, name))
                values[name] = *value;
        texture.sampler = values.empty() ? std::string() : values.dump();
    }
    m_model.textures.push_back(std::move(texture));
    return static_cast<std::uint32_t>(m_model.textures.size() - 1);
}

std::optional<std::size_t> GltfFileMaterials::ImageOf(std::size_t index)
{
    Json const& images = m_file.List("images");
    if (index >= images.size())
    {
        m_file.Reading().Damage("an index of images is not among the " + WithCommas(images.size()));
        return {};
    }
    if (m_images[index])
        return m_images[index];
    Json const& entry = images[index];
    std::string const uri = GltfFile::Text(entry, "uri");
    MeshModel::Image image;
    image.name = GltfFile::Text(entry, "name");
    if (auto const view = GltfFile::Index(entry, "bufferView"))
        image.bytes = m_file.View(*view);
    else if (auto data = GltfFile::DataOf(uri))
        image.bytes = std::move(*data);
    else
        image.path = FileBeside(m_file.Reading().options.folder, GltfFile::PathOf(uri));
    if (image.name.empty() && !uri.starts_with("data:"))
        image.name = uri;
    if (image.bytes.empty() && image.path.empty())
    {
        m_model.losses.AddItem("images of textures", image.name);
        return {};
    }
    m_images[index] = m_model.images.size();
    m_model.images.push_back(std::move(image));
    return m_images[index];
}

}  // namespace KVR
