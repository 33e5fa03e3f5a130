#pragma once

#include <Quantity_ColorRGBA.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <array>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/model/Losses.h"

namespace KVR
{

/// The styles of a scene, made of a document's colours and visual materials: one for each entry of its tables, in their
/// order, whether it is used or not.
class StyleTable
{
public:
    /// Images of materials are copied beside the scene, under its name with endings of their own.
    StyleTable(Handle(TDocStd_Document) const& document, std::string const& scenePath, Losses& losses);

    /// The style that a label states itself: its material's, or its colour. For a curve the colour of curves comes
    /// first, and for all else that of surfaces. Empty for a label without either.
    UTF8String StyleOf(TDF_Label const& label, bool isCurve);

    std::vector<Authoring::StyleRecord> const& Styles() const noexcept { return m_styles; }
    std::vector<Authoring::TextureRecord> const& Textures() const noexcept { return m_textures; }
    /// The names of the images beside the scene.
    std::vector<std::string> const& Images() const noexcept { return m_imageNames; }

private:
    using ColorKey = std::array<float, 4>;

    UTF8String const& StyleOfColor(Quantity_ColorRGBA const& color);
    UTF8String const& StyleOfMaterial(TDF_Label const& material);
    UTF8String TextureOf(Handle(Standard_Transient) const& image);

    Handle(XCAFDoc_ColorTool) m_colorTool;
    std::string m_scenePath;
    Losses& m_losses;
    std::map<ColorKey, UTF8String> m_colors;
    std::map<std::string, UTF8String> m_materials;
    std::map<std::string, UTF8String> m_images;
    std::vector<Authoring::StyleRecord> m_styles;
    std::vector<Authoring::TextureRecord> m_textures;
    std::vector<std::string> m_imageNames;
};

}  // namespace KVR
