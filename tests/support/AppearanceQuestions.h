#pragma once

#include "framework/api/kvr_api.h"

namespace KVR::Test
{

// What a walk over a scene asks of styles and textures; the walk notes the answers.

template <class Walk>
void AskStyle(Walk& walk, IRenderStyle const& style)
{
    using R = IRenderStyle;
    for (auto const getter : {&R::DiffuseColor, &R::AmbientColor, &R::EmissionColor, &R::SpecularColor})
        walk.Ask("color", style, getter);
    walk.template Ask<Color>("transparency", style, &R::Transparency);
    walk.template Ask<double>("transparency", style, &R::Transparency);
    for (auto const getter :
         {&R::DiffuseTexture, &R::AmbientTexture, &R::EmissionTexture, &R::SpecularTexture, &R::BumpMap})
        walk.Ask("texture", style, getter);
    for (auto const getter :
         {&R::DiffuseFactor, &R::AmbientFactor, &R::EmissionFactor, &R::SpecularFactor, &R::Shininess, &R::Reflection,
          &R::Eccentricity, &R::Rolloff, &R::PointStyleMarkerSize, &R::CurveStyleWidth})
        walk.Ask("number", style, getter);
    auto const* const vitreol = dynamic_cast<IVitreolRenderStyle const*>(&style);
    walk.Tell("is of a library", vitreol != nullptr);
    if (!vitreol)
        return;
    walk.Tell("has an asset", vitreol->SerializedAsset() != nullptr);
    walk.Ask("VitreolLibraryId", *vitreol, &IVitreolRenderStyle::VitreolLibraryId);
}

template <class Walk>
void AskTexture(Walk& walk, IMaterialTexture const& texture)
{
    using T = IMaterialTexture;
    for (auto const getter : {&T::TextureType, &T::EmbeddedTextureImageSize, &T::ProjectType, &T::ProcedureU})
        walk.Ask("integer", texture, getter);
    double x = 0.0;
    double y = 0.0;
    if (texture.TextureScale(x, y) == kIsValueSpecified_Yes)
        walk.Tell("TextureScale", x + y);
    char byte = 0;
    walk.Tell("EmbeddedTextureImage", texture.EmbeddedTextureImage(1, &byte) == kIsValueSpecified_Yes);
}

}  // namespace KVR::Test
