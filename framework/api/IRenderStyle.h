#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

class Color;
class VitreolSerializedAsset;

/// How an object looks. Every answer is "not specified", with the output left alone, unless a class says otherwise; a
/// style of a scene answers what the scene states, each number as it stands there. Factors are served beside their
/// colours, which they are not multiplied into. Texture ids stay as the scene has them, also under a prefix of new ids.
class KVR_API IRenderStyle : public IObject
{
public:
    /// Passed through as the scene has it.
    enum ShadingModelType : int
    {
        kShadingModel_Default = 0
    };

    enum PointStyleMarkerTypeEnum : int
    {
        kPointStyleMarkerType_Dot = 0,
        kPointStyleMarkerType_X,
        kPointStyleMarkerType_Plus,
        kPointStyleMarkerType_Asterisk,
        kPointStyleMarkerType_Square,
        kPointStyleMarkerType_Triangle,
        kPointStyleMarkerType_Circle,
        kPointStyleMarkerType_Diamond,
        kPointStyleMarkerType_FilledSquare,
        kPointStyleMarkerType_FilledTriangle,
        kPointStyleMarkerType_FilledCircle,
        kPointStyleMarkerType_FilledDiamond
    };

    enum CurveStyleFontTypeEnum : int
    {
        kCurveStyleFontType_Continuous = 0,
        kCurveStyleFontType_ISO_Dash,
        kCurveStyleFontType_ISO_DashSpace,
        kCurveStyleFontType_ISO_LongDashDot,
        kCurveStyleFontType_ISO_LongDashDoubleDot,
        kCurveStyleFontType_ISO_LongDashTripleDot,
        kCurveStyleFontType_ISO_Dot,
        kCurveStyleFontType_ISO_LongDashShortDash,
        kCurveStyleFontType_ISO_LongDashDoubleShortDash,
        kCurveStyleFontType_ISO_DashDot,
        kCurveStyleFontType_ISO_DoubleDashDot,
        kCurveStyleFontType_ISO_DashDoubleDot,
        kCurveStyleFontType_ISO_DoubleDashDoubleDot,
        kCurveStyleFontType_ISO_DashTripleDot,
        kCurveStyleFontType_ISO_DoubleDashTripleDot
    };

    enum CurveStyleFillTypeEnum : int
    {
        kCurveStyleFillType_Solid = 0
    };

    ~IRenderStyle() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The colour of the lit surface, with its opacity as alpha. `kvr` takes it for sRGB, not linear.
    virtual IsValueSpecifiedEnum DiffuseColor(Color& color) const;
    /// The id of the texture that stands for the diffuse colour.
    virtual IsValueSpecifiedEnum DiffuseTexture(UTF8String& textureId) const;
    /// How much the diffuse colour counts, 0 to 1 by convention.
    virtual IsValueSpecifiedEnum DiffuseFactor(double& factor) const;
    /// The colour under light from all sides.
    virtual IsValueSpecifiedEnum AmbientColor(Color& color) const;
    /// The id of the texture that stands for the ambient colour.
    virtual IsValueSpecifiedEnum AmbientTexture(UTF8String& textureId) const;
    /// How much the ambient colour counts, 0 to 1 by convention.
    virtual IsValueSpecifiedEnum AmbientFactor(double& factor) const;
    /// The colour that the surface gives off by itself.
    virtual IsValueSpecifiedEnum EmissionColor(Color& color) const;
    /// The id of the texture that stands for the emission.
    virtual IsValueSpecifiedEnum EmissionTexture(UTF8String& textureId) const;
    /// How much the emission counts, 0 to 1 by convention.
    virtual IsValueSpecifiedEnum EmissionFactor(double& factor) const;
    /// The colour of highlights.
    virtual IsValueSpecifiedEnum SpecularColor(Color& color) const;
    /// The id of the texture that stands for the specular colour.
    virtual IsValueSpecifiedEnum SpecularTexture(UTF8String& textureId) const;
    /// How much the specular colour counts, 0 to 1 by convention.
    virtual IsValueSpecifiedEnum SpecularFactor(double& factor) const;
    /// How small highlights are, the larger the smaller; the format fixes no scale, and `kvr import` writes what the
    /// model has.
    virtual IsValueSpecifiedEnum Shininess(double& shininess) const;
    /// How light is reckoned: an integer as the scene has it, whose meaning the format leaves open.
    virtual IsValueSpecifiedEnum ShaderType(ShadingModelType& type) const;
    /// How much the surface mirrors; the format fixes no scale.
    virtual IsValueSpecifiedEnum Reflection(double& reflection) const;
    /// How wide highlights are in a shading model that has such a number; the format fixes no scale.
    virtual IsValueSpecifiedEnum Eccentricity(double& eccentricity) const;
    /// How fast highlights fade in a shading model that has such a number; the format fixes no scale.
    virtual IsValueSpecifiedEnum Rolloff(double& rolloff) const;
    /// How much of each colour of light goes through.
    virtual IsValueSpecifiedEnum Transparency(Color& transparency) const;
    /// How much light goes through, from 0, opaque, to 1. `kvr export` takes it where the diffuse colour is opaque.
    virtual IsValueSpecifiedEnum Transparency(double& transparency) const;
    /// The id of the texture that bends the normals.
    virtual IsValueSpecifiedEnum BumpMap(UTF8String& textureId) const;
    /// The id of the texture that cuts holes; not specified for every style of a scene.
    virtual IsValueSpecifiedEnum CutoutTexture(UTF8String& textureId) const;
    /// The mark that a point is shown with; not specified for a text that names none.
    virtual IsValueSpecifiedEnum PointStyleMarker(PointStyleMarkerTypeEnum& marker) const;
    /// The size of the mark. The format states no unit; `kvr` neither writes nor uses the number.
    virtual IsValueSpecifiedEnum PointStyleMarkerSize(double& size) const;
    /// How a line is dashed; not specified for a text that names no font.
    virtual IsValueSpecifiedEnum CurveStyleFont(CurveStyleFontTypeEnum& font) const;
    /// The width of a line. The format states no unit; `kvr` neither writes nor uses the number.
    virtual IsValueSpecifiedEnum CurveStyleWidth(double& width) const;
    /// How the area of a wide line is filled; not specified for a text that names no filling.
    virtual IsValueSpecifiedEnum CurveStyleFillArea(CurveStyleFillTypeEnum& fill) const;
};

/// A style that comes from a material library, with plain colours for hosts that do not know the library.
class KVR_API IVitreolRenderStyle : public IRenderStyle
{
public:
    ~IVitreolRenderStyle() override;
    /// The material in its serialized form, owned by the style; null when there is none.
    virtual VitreolSerializedAsset const* SerializedAsset() const = 0;
    /// The id of the library that the material is in; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum VitreolLibraryId(UTF16String& id) const = 0;
    /// The id of the material's definition in the library; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum AssetDefinitionId(UTF16String& id) const = 0;
    /// The version of the material; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum AssetInstanceVersionGUID(UTF16String& guid) const = 0;
    /// The plain colour that comes nearest to the material: the diffuse colour here.
    virtual IsValueSpecifiedEnum BestFitDiffuseColor(Color& color) const;
};

}  // namespace KVR
