#include "host/dump/AppearanceDump.h"

#include "framework/api/Color.h"
#include "framework/api/IMaterialTexture.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

namespace
{

void DumpVitreolMembers(DumpContext const& context, IVitreolRenderStyle const& style)
{
    Members(context.json, style)
        .Pointer("SerializedAsset", &IVitreolRenderStyle::SerializedAsset,
                 [&](VitreolSerializedAsset const& asset)
                 {
                     context.json.BeginObject();
                     context.json.Key("Type");
                     WriteValue(context.json, asset.Type());
                     WriteBytes(context.json, asset.Data(), asset.Size());
                     context.json.EndObject();
                 })
        .Optional("VitreolLibraryId", &IVitreolRenderStyle::VitreolLibraryId)
        .Optional("AssetDefinitionId", &IVitreolRenderStyle::AssetDefinitionId)
        .Optional("AssetInstanceVersionGUID", &IVitreolRenderStyle::AssetInstanceVersionGUID)
        .Optional("BestFitDiffuseColor", &IVitreolRenderStyle::BestFitDiffuseColor);
}

}  // namespace

void DumpRenderStyle(DumpContext const& context, IRenderStyle const& style)
{
    auto const* vitreolStyle = dynamic_cast<IVitreolRenderStyle const*>(&style);
    DumpObject(context, vitreolStyle ? "IVitreolRenderStyle" : "IRenderStyle", style);
    // Two operations are called Transparency; a member's name stands once.
    using TransparencyOf = IsValueSpecifiedEnum (IRenderStyle::*)(double&) const;
    using TransparencyColorOf = IsValueSpecifiedEnum (IRenderStyle::*)(Color&) const;
    Members(context.json, style)
        .Optional("DiffuseColor", &IRenderStyle::DiffuseColor)
        .Optional("DiffuseTexture", &IRenderStyle::DiffuseTexture)
        .Optional("DiffuseFactor", &IRenderStyle::DiffuseFactor)
        .Optional("AmbientColor", &IRenderStyle::AmbientColor)
        .Optional("AmbientTexture", &IRenderStyle::AmbientTexture)
        .Optional("AmbientFactor", &IRenderStyle::AmbientFactor)
        .Optional("EmissionColor", &IRenderStyle::EmissionColor)
        .Optional("EmissionTexture", &IRenderStyle::EmissionTexture)
        .Optional("EmissionFactor", &IRenderStyle::EmissionFactor)
        .Optional("SpecularColor", &IRenderStyle::SpecularColor)
        .Optional("SpecularTexture", &IRenderStyle::SpecularTexture)
        .Optional("SpecularFactor", &IRenderStyle::SpecularFactor)
        .Optional("Shininess", &IRenderStyle::Shininess)
        .Optional("ShaderType", &IRenderStyle::ShaderType)
        .Optional("Reflection", &IRenderStyle::Reflection)
        .Optional("Eccentricity", &IRenderStyle::Eccentricity)
        .Optional("Rolloff", &IRenderStyle::Rolloff)
        .Optional("Transparency", static_cast<TransparencyOf>(&IRenderStyle::Transparency))
        .Optional("TransparencyColor", static_cast<TransparencyColorOf>(&IRenderStyle::Transparency))
        .Optional("BumpMap", &IRenderStyle::BumpMap)
        .Optional("CutoutTexture", &IRenderStyle::CutoutTexture)
        .Optional("PointStyleMarker", &IRenderStyle::PointStyleMarker)
        .Optional("PointStyleMarkerSize", &IRenderStyle::PointStyleMarkerSize)
        .Optional("CurveStyleFont", &IRenderStyle::CurveStyleFont)
        .Optional("CurveStyleWidth", &IRenderStyle::CurveStyleWidth)
        .Optional("CurveStyleFillArea", &IRenderStyle::CurveStyleFillArea);
    if (vitreolStyle)
        DumpVitreolMembers(context, *vitreolStyle);
}

void DumpMaterialTexture(DumpContext const& context, IMaterialTexture const& texture)
{
    DumpObject(context, "IMaterialTexture", texture);
    Members(context.json, texture)
        .Optional("TextureType", &IMaterialTexture::TextureType)
        .Optional("TextureFileReference", &IMaterialTexture::TextureFileReference)
        .Optional("EmbeddedTextureImageSize", &IMaterialTexture::EmbeddedTextureImageSize)
        .Optional("EmbeddedTextureImageType", &IMaterialTexture::EmbeddedTextureImageType)
        .Pair("TextureDimensions", &IMaterialTexture::TextureDimensions)
        .Pair("TextureCenter", &IMaterialTexture::TextureCenter)
        .Pair("TextureOffset", &IMaterialTexture::TextureOffset)
        .Pair("TextureScale", &IMaterialTexture::TextureScale)
        .Pair("TextureSizeForScale", &IMaterialTexture::TextureSizeForScale)
        .Optional("RotateAngle", &IMaterialTexture::RotateAngle)
        .Optional("ProjectType", &IMaterialTexture::ProjectType)
        .Optional("ProcedureU", &IMaterialTexture::ProcedureU)
        .Optional("RepeatU", &IMaterialTexture::RepeatU)
        .Optional("ProcedureV", &IMaterialTexture::ProcedureV)
        .Optional("RepeatV", &IMaterialTexture::RepeatV)
        .Optional("ProceduralName", &IMaterialTexture::ProceduralName)
        .Optional("TintColor", &IMaterialTexture::TintColor)
        .Value("AssetId", &IMaterialTexture::AssetId)
        .Optional("TextureTransform", &IMaterialTexture::TextureTransform);
}

}  // namespace KVR
