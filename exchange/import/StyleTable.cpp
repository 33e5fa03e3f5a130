#include "exchange/import/StyleTable.h"

#include <Image_Texture.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "exchange/model/CleanText.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

// Open CASCADE keeps colours linear.
Authoring::ColorRecord SceneColor(Quantity_ColorRGBA const& color)
{
    Authoring::ColorRecord record;
    color.GetRGB().Values(record.red, record.green, record.blue, Quantity_TOC_sRGB);
    record.alpha = static_cast<double>(color.Alpha());
    return record;
}

std::string EntryOf(TDF_Label const& label)
{
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

char const* ImageExtension(Handle(Image_Texture) const& image)
{
    TCollection_AsciiString const type = image->MimeType();
    return type == "image/png" ? ".png" : type == "image/jpeg" ? ".jpg" : ".image";
}

}  // namespace

StyleTable::StyleTable(Handle(TDocStd_Document) const& document, std::string const& scenePath, Losses& losses)
    : m_colorTool(XCAFDoc_DocumentTool::ColorTool(document->Main())), m_scenePath(scenePath), m_losses(losses)
{
    TDF_LabelSequence labels;
    m_colorTool->GetColors(labels);
    for (TDF_Label const& label : labels)
    {
        Quantity_ColorRGBA color;
        if (m_colorTool->GetColor(label, color))
            StyleOfColor(color);
    }
    labels.Clear();
    XCAFDoc_DocumentTool::VisMaterialTool(document->Main())->GetMaterials(labels);
    for (TDF_Label const& label : labels)
        StyleOfMaterial(label);
}

UTF8String StyleTable::StyleOf(TDF_Label const& label, bool isCurve)
{
    TDF_Label material;
    if (XCAFDoc_VisMaterialTool::GetShapeMaterial(label, material))
        return StyleOfMaterial(material);
    XCAFDoc_ColorType const order[2][3] = {{XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv},
                                           {XCAFDoc_ColorCurv, XCAFDoc_ColorGen, XCAFDoc_ColorSurf}};
    for (XCAFDoc_ColorType const type : order[isCurve ? 1 : 0])
    {
        Quantity_ColorRGBA color;
        if (m_colorTool->GetColor(label, type, color))
            return StyleOfColor(color);
    }
    return {};
}

UTF8String const& StyleTable::StyleOfColor(Quantity_ColorRGBA const& color)
{
    auto const& rgb = color.GetRGB();
    ColorKey const key{static_cast<float>(rgb.Red()), static_cast<float>(rgb.Green()), static_cast<float>(rgb.Blue()),
                       color.Alpha()};
    auto const [entry, isNew] = m_colors.try_emplace(key);
    if (isNew)
    {
        Authoring::StyleRecord style;
        style.id = UTF8String("style" + std::to_string(m_styles.size() + 1));
        style.label = UTF8String("colour " + std::to_string(m_colors.size()));
        style.diffuse = SceneColor(color);
        if (style.diffuse->alpha < 1.0)
            style.transparency = 1.0 - style.diffuse->alpha;
        entry->second = style.id;
        m_styles.push_back(std::move(style));
    }
    return entry->second;
}

UTF8String const& StyleTable::StyleOfMaterial(TDF_Label const& material)
{
    auto const [entry, isNew] = m_materials.try_emplace(EntryOf(material));
    if (!isNew)
        return entry->second;
    Handle(XCAFDoc_VisMaterial) content;
    material.FindAttribute(XCAFDoc_VisMaterial::GetID(), content);
    Authoring::StyleRecord style;
    style.id = UTF8String("style" + std::to_string(m_styles.size() + 1));
    style.label = NameOfLabel(material);
    if (!content.IsNull())
    {
        style.diffuse = SceneColor(content->BaseColor());
        if (style.diffuse->alpha < 1.0)
            style.transparency = 1.0 - style.diffuse->alpha;
        if (content->HasPbrMaterial())
        {
            XCAFDoc_VisMaterialPBR const& pbr = content->PbrMaterial();
            nlohmann::json const values = {{"metallicFactor", pbr.Metallic}, {"roughnessFactor", pbr.Roughness}};
            style.extensionData.push_back({kPbrTypeId, UTF8String(values.dump()), {}, {}, {}});
            if (pbr.EmissiveFactor.Modulus() > 0.0f)
                style.emission = SceneColor(Quantity_ColorRGBA(std::min(1.0f, pbr.EmissiveFactor.x()),
                                                               std::min(1.0f, pbr.EmissiveFactor.y()),
                                                               std::min(1.0f, pbr.EmissiveFactor.z()), 1.0f));
            if (!pbr.BaseColorTexture.IsNull())
                style.diffuseTexture = TextureOf(pbr.BaseColorTexture);
            if (!pbr.NormalTexture.IsNull())
                style.bumpMap = TextureOf(pbr.NormalTexture);
            for (auto const* const other : {&pbr.MetallicRoughnessTexture, &pbr.EmissiveTexture, &pbr.OcclusionTexture})
                if (!other->IsNull())
                    m_losses.AddItem("textures of roughness, emission and occlusion",
                                     std::string(style.id.View()) + ' ' + std::string(style.label.View()));
        }
        else if (content->HasCommonMaterial())
        {
            XCAFDoc_VisMaterialCommon const& common = content->CommonMaterial();
            style.ambient = SceneColor(Quantity_ColorRGBA(common.AmbientColor, 1.0f));
            style.specular = SceneColor(Quantity_ColorRGBA(common.SpecularColor, 1.0f));
            style.emission = SceneColor(Quantity_ColorRGBA(common.EmissiveColor, 1.0f));
            style.shininess = static_cast<double>(common.Shininess);
            if (!common.DiffuseTexture.IsNull())
                style.diffuseTexture = TextureOf(common.DiffuseTexture);
        }
    }
    entry->second = style.id;
    m_styles.push_back(std::move(style));
    return entry->second;
}

UTF8String StyleTable::TextureOf(Handle(Standard_Transient) const& image)
{
    Handle(Image_Texture) const texture = Handle(Image_Texture)::DownCast(image);
    auto const [entry, isNew] = m_images.try_emplace(texture->TextureId().ToCString());
    if (!isNew)
        return entry->second;
    Authoring::TextureRecord record;
    record.id = UTF8String("texture" + std::to_string(m_textures.size() + 1));
    std::string const path = m_scenePath + '.' + std::string(record.id.View()) + ImageExtension(texture);
    std::string const name = std::filesystem::path(path).filename().string();
    record.label = CleanText(name);
    record.fileReference = CleanText(name);
    std::ofstream file(path, std::ios::binary);
    if (texture->WriteImage(file, path.c_str()) && file.flush())
    {
        entry->second = record.id;
        m_imageNames.push_back(name);
    }
    else
        m_losses.AddItem("images of textures", name);
    m_textures.push_back(record);
    return entry->second;
}

}  // namespace KVR
