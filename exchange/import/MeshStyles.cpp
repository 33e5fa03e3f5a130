#include "exchange/import/MeshStyles.h"

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "exchange/model/CleanText.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// How the bytes of images begin.
constexpr std::pair<std::string_view, char const*> kImages[] = {
    {"\x89PNG", ".png"}, {"\xFF\xD8\xFF", ".jpg"}, {"GIF8", ".gif"}, {"BM", ".bmp"},       {"II*", ".tif"},
    {"MM", ".tif"},      {"RIFF", ".webp"},        {"DDS ", ".dds"}, {"\xABKTX", ".ktx2"},
};

// Empty for bytes that are no image. Of one form only the name tells.
std::string ExtensionOf(std::string_view bytes, std::string const& name)
{
    for (auto const& [head, extension] : kImages)
        if (bytes.starts_with(head))
            return extension;
    std::string const extension = fs::path(name).extension().string();
    return extension == ".tga" || extension == ".TGA" ? ".tga" : std::string();
}

std::string BytesOf(MeshModel::Image const& image)
{
    if (image.path.empty())
        return image.bytes;
    std::ifstream file(image.path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The name of the image's file beside the scene; empty when there is none.
std::string WriteImage(MeshModel::Image const& image, std::string const& target)
{
    std::string const bytes = BytesOf(image);
    std::string const extension = ExtensionOf(bytes, image.path.empty() ? image.name : image.path);
    if (extension.empty())
        return {};
    std::string const path = target + extension;
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    return file ? fs::path(path).filename().string() : std::string();
}

Authoring::ColorRecord ColorOf(MeshModel::Color const& color)
{
    return {color[0], color[1], color[2], color[3]};
}

std::optional<Authoring::ColorRecord> ColorOf(std::optional<MeshModel::Color> const& color)
{
    return color ? std::optional(ColorOf(*color)) : std::nullopt;
}

Authoring::TextureRecord TextureOf(MeshModel::Texture const& texture)
{
    Authoring::TextureRecord record;
    record.offset = texture.offset;
    record.scale = texture.scale;
    record.rotation = texture.rotation;
    if (!texture.sampler.empty())
        record.extensionData.push_back({kSamplerTypeId, UTF8String(texture.sampler), {}, {}, {}});
    return record;
}

Authoring::StyleRecord StyleOf(MeshModel::Material const& material)
{
    Authoring::StyleRecord style;
    style.label = CleanText(material.name);
    style.diffuse = ColorOf(material.color);
    style.ambient = ColorOf(material.ambient);
    style.specular = ColorOf(material.specular);
    style.emission = ColorOf(material.emission);
    style.shininess = material.shininess;
    if (style.diffuse && style.diffuse->alpha < 1.0)
        style.transparency = 1.0 - style.diffuse->alpha;
    if (material.metallicRoughness)
    {
        nlohmann::json const values = {{"metallicFactor", material.metallicRoughness->first},
                                       {"roughnessFactor", material.metallicRoughness->second}};
        style.extensionData.push_back({kPbrTypeId, UTF8String(values.dump()), {}, {}, {}});
    }
    if (!material.details.empty())
        style.extensionData.push_back({kMaterialTypeId, UTF8String(material.details), {}, {}, {}});
    return style;
}

}  // namespace

MeshStyles MeshStyles::Of(MeshModel const& model, std::string const& scenePath, Losses& losses)
{
    MeshStyles result;
    std::vector<std::string> files;
    for (MeshModel::Image const& image : model.images)
    {
        files.push_back(WriteImage(image, scenePath + ".texture" + std::to_string(files.size() + 1)));
        if (files.back().empty())
            losses.AddItem("images of textures", image.name);
        else
            result.images.push_back(files.back());
    }
    std::vector<std::optional<UTF8String>> ids;
    for (MeshModel::Texture const& texture : model.textures)
    {
        ids.emplace_back();
        if (files[texture.image].empty())
            continue;
        Authoring::TextureRecord record = TextureOf(texture);
        record.id = UTF8String("texture" + std::to_string(result.textures.size() + 1));
        record.fileReference = CleanText(files[texture.image]);
        record.label = CleanText(model.images[texture.image].name);
        ids.back() = record.id;
        result.textures.push_back(std::move(record));
    }
    auto const idOf = [&](std::uint32_t texture)
    { return texture == MeshModel::kNone ? std::optional<UTF8String>() : ids[texture]; };
    for (MeshModel::Material const& material : model.materials)
    {
        Authoring::StyleRecord style = StyleOf(material);
        style.id = UTF8String("style" + std::to_string(result.styles.size() + 1));
        style.diffuseTexture = idOf(material.colorTexture);
        style.bumpMap = idOf(material.bumpTexture);
        result.styles.push_back(std::move(style));
    }
    return result;
}

}  // namespace KVR
