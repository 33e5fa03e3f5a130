#include "describe/Rows.h"
#include "framework/api/Blob.h"
#include "framework/api/Color.h"
#include "framework/api/IMaterialTexture.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/VitreolSerializedAsset.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;
constexpr AnswerType kBytes{.kind = AnswerType::Kind::Bytes};

constexpr Row kRenderStyleRows[] = {
    Inherits<IRenderStyle, IObject>(),
    Value<&IRenderStyle::DiffuseColor>("DiffuseColor"),
    Value<&IRenderStyle::DiffuseTexture>("DiffuseTexture").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::DiffuseFactor>("DiffuseFactor"),
    Value<&IRenderStyle::AmbientColor>("AmbientColor"),
    Value<&IRenderStyle::AmbientTexture>("AmbientTexture").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::AmbientFactor>("AmbientFactor"),
    Value<&IRenderStyle::EmissionColor>("EmissionColor"),
    Value<&IRenderStyle::EmissionTexture>("EmissionTexture").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::EmissionFactor>("EmissionFactor"),
    Value<&IRenderStyle::SpecularColor>("SpecularColor"),
    Value<&IRenderStyle::SpecularTexture>("SpecularTexture").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::SpecularFactor>("SpecularFactor"),
    Value<&IRenderStyle::Shininess>("Shininess"),
    Value<&IRenderStyle::ShaderType>("ShaderType"),
    Value<&IRenderStyle::Reflection>("Reflection"),
    Value<&IRenderStyle::Eccentricity>("Eccentricity"),
    Value<&IRenderStyle::Rolloff>("Rolloff"),
    // Two operations are called Transparency; a member's name stands once.
    Value<Writing<double>(&IRenderStyle::Transparency)>("Transparency"),
    Value<Writing<Color>(&IRenderStyle::Transparency)>("TransparencyColor"),
    Value<&IRenderStyle::BumpMap>("BumpMap").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::CutoutTexture>("CutoutTexture").RefersTo(Refers::Elsewhere),
    Value<&IRenderStyle::PointStyleMarker>("PointStyleMarker"),
    Value<&IRenderStyle::PointStyleMarkerSize>("PointStyleMarkerSize"),
    Value<&IRenderStyle::CurveStyleFont>("CurveStyleFont"),
    Value<&IRenderStyle::CurveStyleWidth>("CurveStyleWidth"),
    Value<&IRenderStyle::CurveStyleFillArea>("CurveStyleFillArea"),
};

template <class Holder>
void TellBytesOf(void const* object, Telling const& telling)
{
    auto const& holder = *static_cast<Holder const*>(object);
    telling.to.Bytes(holder.Data(), static_cast<std::size_t>(holder.Size()));
}

constexpr Row kBlobRows[] = {
    Value<&Blob::Size>("Size"),
    Told<&TellBytesOf<Blob>>("Base64", kBytes),
};

constexpr Row kAssetRows[] = {
    Value<&VitreolSerializedAsset::Type>("Type"),
    Value<&VitreolSerializedAsset::Size>("Size"),
    Told<&TellBytesOf<VitreolSerializedAsset>>("Base64", kBytes),
};

constexpr Row kVitreolStyleRows[] = {
    Inherits<IVitreolRenderStyle, IRenderStyle>(),
    Value<&IVitreolRenderStyle::SerializedAsset>("SerializedAsset"),
    Value<&IVitreolRenderStyle::VitreolLibraryId>("VitreolLibraryId"),
    Value<&IVitreolRenderStyle::AssetDefinitionId>("AssetDefinitionId"),
    Value<&IVitreolRenderStyle::AssetInstanceVersionGUID>("AssetInstanceVersionGUID"),
    Value<&IVitreolRenderStyle::BestFitDiffuseColor>("BestFitDiffuseColor"),
};

// The first byte of the image; an image without bytes is not asked for.
IsValueSpecifiedEnum FirstImageByte(IMaterialTexture const& texture, int& value)
{
    int size = 0;
    if (texture.EmbeddedTextureImageSize(size) != kIsValueSpecified_Yes || size < 1)
        return kIsValueSpecified_No;
    unsigned char byte = 0;
    auto const answer = texture.EmbeddedTextureImage(1, &byte);
    value = byte;
    return answer;
}

constexpr Row kTextureRows[] = {
    Inherits<IMaterialTexture, IObject>(),
    Value<&IMaterialTexture::TextureType>("TextureType"),
    Value<&IMaterialTexture::TextureFileReference>("TextureFileReference"),
    Value<&IMaterialTexture::EmbeddedTextureImageSize>("EmbeddedTextureImageSize"),
    Value<&FirstImageByte, &IMaterialTexture::EmbeddedTextureImage>("FirstImageByte").NotInDump(),
    Value<&IMaterialTexture::EmbeddedTextureImageType>("EmbeddedTextureImageType"),
    Value<&IMaterialTexture::TextureDimensions>("TextureDimensions"),
    Value<&IMaterialTexture::TextureCenter>("TextureCenter"),
    Value<&IMaterialTexture::TextureOffset>("TextureOffset"),
    Value<&IMaterialTexture::TextureScale>("TextureScale"),
    Value<&IMaterialTexture::TextureSizeForScale>("TextureSizeForScale"),
    Value<&IMaterialTexture::RotateAngle>("RotateAngle"),
    Value<&IMaterialTexture::ProjectType>("ProjectType"),
    Value<&IMaterialTexture::ProcedureU>("ProcedureU"),
    Value<&IMaterialTexture::RepeatU>("RepeatU"),
    Value<&IMaterialTexture::ProcedureV>("ProcedureV"),
    Value<&IMaterialTexture::RepeatV>("RepeatV"),
    Value<&IMaterialTexture::ProceduralName>("ProceduralName"),
    Value<&IMaterialTexture::TintColor>("TintColor"),
    Value<&IMaterialTexture::AssetId>("AssetId"),
    Value<&IMaterialTexture::TextureTransform>("TextureTransform"),
};

}  // namespace

Interface const TableOf<IRenderStyle>::kTable = {"IRenderStyle", kRenderStyleRows, kNamed};
Interface const TableOf<IVitreolRenderStyle>::kTable = {"IVitreolRenderStyle", kVitreolStyleRows, kNamed};
Interface const TableOf<IMaterialTexture>::kTable = {"IMaterialTexture", kTextureRows, kNamed};
Interface const TableOf<VitreolSerializedAsset>::kTable = {"VitreolSerializedAsset", kAssetRows};
Interface const TableOf<Blob>::kTable = {"Blob", kBlobRows};

}  // namespace KVR
