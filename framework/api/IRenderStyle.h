#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

class Color;
class VitreolSerializedAsset;

/// How an object looks. Every answer is "not specified", with the output left alone, unless a class says otherwise.
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
    virtual IsValueSpecifiedEnum DiffuseColor(Color& color) const;
    virtual IsValueSpecifiedEnum DiffuseTexture(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum DiffuseFactor(double& factor) const;
    virtual IsValueSpecifiedEnum AmbientColor(Color& color) const;
    virtual IsValueSpecifiedEnum AmbientTexture(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum AmbientFactor(double& factor) const;
    virtual IsValueSpecifiedEnum EmissionColor(Color& color) const;
    virtual IsValueSpecifiedEnum EmissionTexture(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum EmissionFactor(double& factor) const;
    virtual IsValueSpecifiedEnum SpecularColor(Color& color) const;
    virtual IsValueSpecifiedEnum SpecularTexture(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum SpecularFactor(double& factor) const;
    virtual IsValueSpecifiedEnum Shininess(double& shininess) const;
    virtual IsValueSpecifiedEnum ShaderType(ShadingModelType& type) const;
    virtual IsValueSpecifiedEnum Reflection(double& reflection) const;
    virtual IsValueSpecifiedEnum Eccentricity(double& eccentricity) const;
    virtual IsValueSpecifiedEnum Rolloff(double& rolloff) const;
    virtual IsValueSpecifiedEnum Transparency(Color& transparency) const;
    virtual IsValueSpecifiedEnum Transparency(double& transparency) const;
    virtual IsValueSpecifiedEnum BumpMap(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum CutoutTexture(UTF8String& textureId) const;
    virtual IsValueSpecifiedEnum PointStyleMarker(PointStyleMarkerTypeEnum& marker) const;
    virtual IsValueSpecifiedEnum PointStyleMarkerSize(double& size) const;
    virtual IsValueSpecifiedEnum CurveStyleFont(CurveStyleFontTypeEnum& font) const;
    virtual IsValueSpecifiedEnum CurveStyleWidth(double& width) const;
    virtual IsValueSpecifiedEnum CurveStyleFillArea(CurveStyleFillTypeEnum& fill) const;
};

/// A style that comes from a material library, with plain colours for hosts that do not know the library.
class KVR_API IVitreolRenderStyle : public IRenderStyle
{
public:
    ~IVitreolRenderStyle() override;
    /// The material in its serialized form, owned by the style; null when there is none.
    virtual VitreolSerializedAsset const* SerializedAsset() const = 0;
    virtual IsValueSpecifiedEnum VitreolLibraryId(UTF16String& id) const = 0;
    virtual IsValueSpecifiedEnum AssetDefinitionId(UTF16String& id) const = 0;
    virtual IsValueSpecifiedEnum AssetInstanceVersionGUID(UTF16String& guid) const = 0;
    /// The plain colour that comes nearest to the material: the diffuse colour here.
    virtual IsValueSpecifiedEnum BestFitDiffuseColor(Color& color) const;
};

}  // namespace KVR
