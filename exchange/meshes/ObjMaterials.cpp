#include "exchange/meshes/ObjMaterials.h"

#include <algorithm>
#include <cctype>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/MeshReading.h"
#include "exchange/meshes/TextWords.h"

namespace KVR
{

namespace
{

using Material = MeshModel::Material;

struct ColorRow
{
    std::string_view keyword;
    std::optional<MeshModel::Color> Material::*color;
};
constexpr ColorRow kColors[] = {
    {"Kd", &Material::color}, {"Ka", &Material::ambient}, {"Ks", &Material::specular}, {"Ke", &Material::emission}};

// What the options of a texture are followed by: so many words at the most, of which some may be missing.
std::size_t OptionLength(std::string_view option)
{
    if (option == "-o" || option == "-s" || option == "-t")
        return 3;
    return option == "-mm" ? 2 : 1;
}

std::optional<MeshModel::Color> ColorOf(std::string_view text)
{
    TextWords words(text);
    MeshModel::Color color{0.0, 0.0, 0.0, 1.0};
    for (std::size_t i = 0; i < 3; ++i)
    {
        std::string_view const word = words.Next();
        std::optional<double> const number = NumberOf<double>(word);
        // One number is a grey.
        if (!number && (i == 0 || !word.empty()))
            return {};
        color[i] = number ? std::clamp(*number, 0.0, 1.0) : color[0];
    }
    return color;
}

void SetOpacity(Material& material, double opacity)
{
    if (!material.color)
        material.color = MeshModel::Color{1.0, 1.0, 1.0, 1.0};
    (*material.color)[3] = std::clamp(opacity, 0.0, 1.0);
}

}  // namespace

void ObjMaterials::ReadLibrary(std::string const& name)
{
    std::string const path = FileBeside(m_folder, name);
    if (path.empty())
    {
        m_model.losses.AddItem("material libraries that are not there", TextOfBytes(name));
        return;
    }
    std::string const text = BytesOfFile(path);
    TextLines lines(text);
    std::string_view line;
    std::uint32_t current = MeshModel::kNone;
    while (lines.Next(line))
    {
        TextWords words(line);
        std::string_view const keyword = words.Next();
        if (keyword == "newmtl")
            current = MaterialOf(std::string(words.Rest()));
        else if (current != MeshModel::kNone && !keyword.empty())
            ReadLine(keyword, words.Rest(), m_model.materials[current]);
    }
}

std::uint32_t ObjMaterials::MaterialOf(std::string const& name)
{
    auto const [entry, isNew] = m_materials.try_emplace(name, static_cast<std::uint32_t>(m_model.materials.size()));
    if (isNew)
        m_model.materials.emplace_back().name = TextOfBytes(name);
    return entry->second;
}

void ObjMaterials::ReadLine(std::string_view keyword, std::string_view rest, Material& material)
{
    for (ColorRow const& row : kColors)
        if (keyword == row.keyword)
            if (std::optional<MeshModel::Color> color = ColorOf(rest))
            {
                if (row.color == &Material::color && material.color)
                    (*color)[3] = (*material.color)[3];
                material.*row.color = color;
            }
    std::optional<double> const number = NumberOf<double>(TextWords(rest).Next());
    if (keyword == "d" && number)
        SetOpacity(material, *number);
    else if (keyword == "Tr" && number)
        SetOpacity(material, 1.0 - *number);
    else if (keyword == "Ns" && number)
        material.shininess = *number;
    else if (keyword == "map_Kd")
        material.colorTexture = TextureOf(rest);
    else if (keyword == "map_bump" || keyword == "map_Bump" || keyword == "bump" || keyword == "norm")
        material.bumpTexture = TextureOf(rest);
    else if (keyword.starts_with("map_") || keyword == "disp" || keyword == "decal" || keyword == "refl")
        m_model.losses.AddItem("textures of other things than colour and relief", TextOfBytes(rest));
    else if ((keyword == "Pm" || keyword == "Pr") && number)
    {
        auto& values =
            material.metallicRoughness ? *material.metallicRoughness : material.metallicRoughness.emplace(0.0, 1.0);
        (keyword == "Pm" ? values.first : values.second) = std::clamp(*number, 0.0, 1.0);
    }
}

std::uint32_t ObjMaterials::TextureOf(std::string_view statement)
{
    MeshModel::Texture texture;
    TextWords words(statement);
    while (words.Rest().starts_with('-'))
    {
        std::string_view const option = words.Next();
        std::array<double, 3> values{};
        std::size_t count = 0;
        for (std::size_t const most = OptionLength(option); count < most; ++count)
        {
            TextWords ahead = words;
            std::string_view const word = ahead.Next();
            std::optional<double> const number = NumberOf<double>(word);
            if (!number && (most > 1 || count > 0))
                break;
            values[count] = number.value_or(0.0);
            words = ahead;
        }
        if (option == "-o" && count >= 2)
            texture.offset = {values[0], values[1]};
        else if (option == "-s" && count >= 2)
            texture.scale = {values[0], values[1]};
    }
    std::string const name(words.Rest());
    auto const [entry, isNew] = m_images.try_emplace(name, MeshModel::kNone);
    if (isNew)
    {
        std::string path = FileBeside(m_folder, name);
        if (path.empty())
            m_model.losses.AddItem("images of textures", TextOfBytes(name));
        else
        {
            entry->second = static_cast<std::uint32_t>(m_model.images.size());
            m_model.images.push_back({TextOfBytes(name), {}, std::move(path)});
        }
    }
    if (entry->second == MeshModel::kNone)
        return MeshModel::kNone;
    texture.image = entry->second;
    m_model.textures.push_back(texture);
    return static_cast<std::uint32_t>(m_model.textures.size() - 1);
}

}  // namespace KVR
