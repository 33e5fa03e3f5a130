#include "appearance/StyleReader.h"

#include <cstddef>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStyle.h"
#include "framework/xml_util/XMLUtils.h"
#include "framework/xml_util/XMLVitreolStyle.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ColorReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

struct DoubleRow
{
    AttributeName attribute;
    void (XMLStyle::*setter)(double const&);
};

// Kept: these stand on "DiffuseColor", also where they speak of another colour. "ColorFactor" was read before them, so
// that "DiffuseFactor" beats it.
constexpr DoubleRow kScalarRows[] = {
    {Names::Shininess, &XMLStyle::SetShininess},           {Names::Reflection, &XMLStyle::SetReflection},
    {Names::Eccentricity, &XMLStyle::SetEccentricity},     {Names::Rolloff, &XMLStyle::SetRolloff},
    {Names::Transparency, &XMLStyle::SetTransparency},     {Names::DiffuseFactor, &XMLStyle::SetDiffuseFactor},
    {Names::AmbientFactor, &XMLStyle::SetAmbientFactor},   {Names::EmissionFactor, &XMLStyle::SetEmissionFactor},
    {Names::SpecularFactor, &XMLStyle::SetSpecularFactor},
};

void ReadVersionPersistentId(DOMNode const* node, XMLObject& style)
{
    UTF8String id;
    if (XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, id))
        style.SetVersionPersistentId(id);
}

void KeepChangeKey(DOMNode* node, XMLObject& style)
{
    ChangeKeyText changeKey;
    if (ReadChangeKey(node, changeKey))
        style.SetChangeKey(std::move(changeKey));
}

template <class Style>
void ReadColorInto(DOMNode const* node, Style& style, void (Style::*setColor)(Color const&),
                   void (Style::*setFactor)(double const&))
{
    // An incomplete colour is passed over.
    Ignored(ReadColorFactor(node, style, setColor, setFactor));
}

// Kept: the id is taken as written, although a texture's own id is mapped.
void ReadTextId(DOMNode const* node, AttributeName attribute, XMLStyle& style,
                void (XMLStyle::*setter)(UTF8String const&))
{
    UTF8String id;
    if (XMLUtils::GetNodeAttribute(node, attribute, id))
        (style.*setter)(id);
}

void ReadStyleTextureId(DOMNode const* node, XMLStyle& style, void (XMLStyle::*setter)(UTF8String const&))
{
    ReadTextId(node, Names::TextureId, style, setter);
}

void ReadStyleScalars(DOMNode const* node, XMLStyle& style)
{
    for (DoubleRow const& row : kScalarRows)
        ReadStyleDouble(node, row.attribute, style, row.setter);
    if (XMLCh const* const text = AttributeText(node, Names::ShaderType))
        style.SetShaderType(static_cast<IRenderStyle::ShadingModelType>(XMLStrUtil::XMLStrToInt(text)));
    ReadTextId(node, Names::BumpMapId, style, &XMLStyle::SetBumpMap);
    for (DOMNode const* const child : Children(node))
    {
        if (!IsNamed(child, Names::TransparencyRGB))
            continue;
        ReadColorInto<XMLStyle>(child, style, &XMLStyle::SetTransparency, nullptr);
        // Kept: the first one alone, whether or not it is a colour.
        break;
    }
}

void ReadDiffuseColor(DOMNode const* node, XMLStyle& style)
{
    ReadColorInto(node, style, &XMLStyle::SetDiffuseColor, &XMLStyle::SetDiffuseFactor);
    ReadStyleTextureId(node, style, &XMLStyle::SetDiffuseTexture);
    ReadStyleScalars(node, style);
}

// Hands the enumerator that an attribute names to the setter; nothing for an absent attribute and an unknown text.
template <class Enum, std::size_t kSize>
void ReadEnum(DOMNode const* node, AttributeName attribute, EnumText<Enum> const (&rows)[kSize], XMLStyle& style,
              void (XMLStyle::*setter)(Enum))
{
    Enum value{};
    if (ValueOfDocumentText(rows, AttributeText(node, attribute), value))
        (style.*setter)(value);
}

void ReadPointAndCurveStyle(DOMNode const* node, XMLStyle& style)
{
    ReadEnum(node, Names::PointStyleMarkerType, kPointStyleMarkerTypeTexts, style, &XMLStyle::SetPointStyleMarker);
    ReadStyleDouble(node, Names::PointStyleMarkerSize, style, &XMLStyle::SetPointStyleMarkerSize);
    ReadEnum(node, Names::CurveStyleFont, kCurveStyleFontTypeTexts, style, &XMLStyle::SetCurveStyleFont);
    ReadStyleDouble(node, Names::CurveStyleWidth, style, &XMLStyle::SetCurveStyleWidth);
    ReadEnum(node, Names::CurveStyleFillArea, kCurveStyleFillTypeTexts, style, &XMLStyle::SetCurveStyleFillArea);
}

void ReadVitreolDiffuseColor(DOMNode const* node, XMLVitreolStyle& style)
{
    ReadColorInto(node, style, &XMLVitreolStyle::SetDiffuseColor, &XMLVitreolStyle::SetDiffuseFactor);
    ReadStyleDouble(node, Names::Shininess, style, &XMLVitreolStyle::SetShininess);
    ReadStyleDouble(node, Names::Transparency, style, &XMLVitreolStyle::SetTransparency);
}

struct LibraryIdRow
{
    AttributeName attribute;
    void (XMLVitreolStyle::*setter)(UTF16String const&);
};

constexpr LibraryIdRow kLibraryIdRows[] = {
    {Names::VitreolLibraryId, &XMLVitreolStyle::SetVitreolLibraryId},
    {Names::VitreolAssetDefinitionId, &XMLVitreolStyle::SetAssetDefinitionId},
    {Names::VitreolAssetInstanceVersionGUID, &XMLVitreolStyle::SetAssetInstanceVersionGUID},
};

void ReadVitreolStyleInfo(DOMNode const* node, XMLVitreolStyle& style)
{
    for (LibraryIdRow const& row : kLibraryIdRows)
    {
        UTF16String text;
        if (XMLUtils::GetNodeAttribute(node, row.attribute, text))
            (style.*row.setter)(text);
    }
}

}  // namespace

bool HasVitreolStyleInfo(DOMNode const* node)
{
    for (DOMNode const* const child : Children(node))
    {
        if (IsNamed(child, Names::VitreolStyleInfo))
            return true;
    }
    return false;
}

void ReadStyle(DOMNode* node, XMLStyle& style)
{
    using S = XMLStyle;
    ReadVersionPersistentId(node, style);
    for (DOMNode* const child : Children(node))
    {
        auto const color = [&](void (S::*setColor)(Color const&), void (S::*setFactor)(double const&))
        { ReadColorInto(child, style, setColor, setFactor); };
        auto const texture = [&](void (S::*setter)(UTF8String const&)) { ReadStyleTextureId(child, style, setter); };
        Match(child,                                                                                  //
              On(Names::ExtensionData, [&] { AddExtensionData(child, style); }),                      //
              On(Names::ChangeKey, [&] { KeepChangeKey(child, style); }),                             //
              On(Names::DiffuseColor, [&] { ReadDiffuseColor(child, style); }),                       //
              On(Names::DiffuseTexture, [&] { texture(&S::SetDiffuseTexture); }),                     //
              On(Names::AmbientColor, [&] { color(&S::SetAmbientColor, &S::SetAmbientFactor); }),     //
              On(Names::AmbientTexture, [&] { texture(&S::SetAmbientTexture); }),                     //
              On(Names::EmissionColor, [&] { color(&S::SetEmissionColor, &S::SetEmissionFactor); }),  //
              On(Names::EmissionTexture, [&] { texture(&S::SetEmissionTexture); }),                   //
              On(Names::SpecularColor, [&] { color(&S::SetSpecularColor, &S::SetSpecularFactor); }),  //
              On(Names::SpecularTexture, [&] { texture(&S::SetSpecularTexture); }),                   //
              On(Names::BumpMap, [&] { texture(&S::SetBumpMap); }));
    }
    ReadPointAndCurveStyle(node, style);
}

// Kept: no attribute of point and curve styles, no texture, and of the scalars two.
void ReadVitreolStyle(DOMNode* node, XMLVitreolStyle& style)
{
    using S = XMLVitreolStyle;
    ReadVersionPersistentId(node, style);
    for (DOMNode* const child : Children(node))
    {
        auto const color = [&](void (S::*setColor)(Color const&), void (S::*setFactor)(double const&))
        { ReadColorInto(child, style, setColor, setFactor); };
        Match(child,                                                                                  //
              On(Names::ExtensionData, [&] { AddExtensionData(child, style); }),                      //
              On(Names::ChangeKey, [&] { KeepChangeKey(child, style); }),                             //
              On(Names::DiffuseColor, [&] { ReadVitreolDiffuseColor(child, style); }),                //
              On(Names::AmbientColor, [&] { color(&S::SetAmbientColor, &S::SetAmbientFactor); }),     //
              On(Names::EmissionColor, [&] { color(&S::SetEmissionColor, &S::SetEmissionFactor); }),  //
              On(Names::SpecularColor, [&] { color(&S::SetSpecularColor, &S::SetSpecularFactor); }),  //
              On(Names::VitreolStyleInfo, [&] { ReadVitreolStyleInfo(child, style); }));
    }
}

}  // namespace KVR
