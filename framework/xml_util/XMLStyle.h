#pragma once

#include "framework/api/Color.h"
#include "framework/api/IRenderStyle.h"
#include "framework/xml_util/Export.h"
#include "framework/xml_util/ObjectState.h"
#include "framework/xml_util/SpecifiedValue.h"

namespace KVR
{

/// A style that the scene describes in full. A value is specified once its setter was called; a cutout texture never
/// is.
class KVR_XML_UTIL_API XMLStyle : public ObjectState<IRenderStyle>
{
public:
    XMLStyle(UTF8String const& id, UTF16String const& label);
    ~XMLStyle() override;

    IsValueSpecifiedEnum DiffuseColor(Color& color) const override { return m_diffuseColor.Get(color); }
    IsValueSpecifiedEnum DiffuseTexture(UTF8String& textureId) const override
    {
        return m_diffuseTexture.Get(textureId);
    }
    IsValueSpecifiedEnum DiffuseFactor(double& factor) const override { return m_diffuseFactor.Get(factor); }
    IsValueSpecifiedEnum AmbientColor(Color& color) const override { return m_ambientColor.Get(color); }
    IsValueSpecifiedEnum AmbientTexture(UTF8String& textureId) const override
    {
        return m_ambientTexture.Get(textureId);
    }
    IsValueSpecifiedEnum AmbientFactor(double& factor) const override { return m_ambientFactor.Get(factor); }
    IsValueSpecifiedEnum EmissionColor(Color& color) const override { return m_emissionColor.Get(color); }
    IsValueSpecifiedEnum EmissionTexture(UTF8String& textureId) const override
    {
        return m_emissionTexture.Get(textureId);
    }
    IsValueSpecifiedEnum EmissionFactor(double& factor) const override { return m_emissionFactor.Get(factor); }
    IsValueSpecifiedEnum SpecularColor(Color& color) const override { return m_specularColor.Get(color); }
    IsValueSpecifiedEnum SpecularTexture(UTF8String& textureId) const override
    {
        return m_specularTexture.Get(textureId);
    }
    IsValueSpecifiedEnum SpecularFactor(double& factor) const override { return m_specularFactor.Get(factor); }
    IsValueSpecifiedEnum Shininess(double& shininess) const override { return m_shininess.Get(shininess); }
    IsValueSpecifiedEnum ShaderType(ShadingModelType& type) const override { return m_shaderType.Get(type); }
    IsValueSpecifiedEnum Reflection(double& reflection) const override { return m_reflection.Get(reflection); }
    IsValueSpecifiedEnum Eccentricity(double& eccentricity) const override { return m_eccentricity.Get(eccentricity); }
    IsValueSpecifiedEnum Rolloff(double& rolloff) const override { return m_rolloff.Get(rolloff); }
    IsValueSpecifiedEnum Transparency(Color& transparency) const override
    {
        return m_transparencyColor.Get(transparency);
    }
    IsValueSpecifiedEnum Transparency(double& transparency) const override { return m_transparency.Get(transparency); }
    IsValueSpecifiedEnum BumpMap(UTF8String& textureId) const override { return m_bumpMap.Get(textureId); }
    IsValueSpecifiedEnum PointStyleMarker(PointStyleMarkerTypeEnum& marker) const override
    {
        return m_pointStyleMarker.Get(marker);
    }
    IsValueSpecifiedEnum PointStyleMarkerSize(double& size) const override { return m_pointStyleMarkerSize.Get(size); }
    IsValueSpecifiedEnum CurveStyleFont(CurveStyleFontTypeEnum& font) const override
    {
        return m_curveStyleFont.Get(font);
    }
    IsValueSpecifiedEnum CurveStyleWidth(double& width) const override { return m_curveStyleWidth.Get(width); }
    IsValueSpecifiedEnum CurveStyleFillArea(CurveStyleFillTypeEnum& fill) const override
    {
        return m_curveStyleFillArea.Get(fill);
    }

    void SetDiffuseColor(Color const& color) { m_diffuseColor.Set(color); }
    void SetDiffuseTexture(UTF8String const& textureId) { m_diffuseTexture.Set(textureId); }
    void SetDiffuseFactor(double const& factor) { m_diffuseFactor.Set(factor); }
    void SetAmbientColor(Color const& color) { m_ambientColor.Set(color); }
    void SetAmbientTexture(UTF8String const& textureId) { m_ambientTexture.Set(textureId); }
    void SetAmbientFactor(double const& factor) { m_ambientFactor.Set(factor); }
    void SetEmissionColor(Color const& color) { m_emissionColor.Set(color); }
    void SetEmissionTexture(UTF8String const& textureId) { m_emissionTexture.Set(textureId); }
    void SetEmissionFactor(double const& factor) { m_emissionFactor.Set(factor); }
    void SetSpecularColor(Color const& color) { m_specularColor.Set(color); }
    void SetSpecularTexture(UTF8String const& textureId) { m_specularTexture.Set(textureId); }
    void SetSpecularFactor(double const& factor) { m_specularFactor.Set(factor); }
    void SetShininess(double const& shininess) { m_shininess.Set(shininess); }
    void SetShaderType(ShadingModelType type) { m_shaderType.Set(type); }
    void SetReflection(double const& reflection) { m_reflection.Set(reflection); }
    void SetEccentricity(double const& eccentricity) { m_eccentricity.Set(eccentricity); }
    void SetRolloff(double const& rolloff) { m_rolloff.Set(rolloff); }
    void SetTransparency(Color const& transparency) { m_transparencyColor.Set(transparency); }
    void SetTransparency(double const& transparency) { m_transparency.Set(transparency); }
    void SetBumpMap(UTF8String const& textureId) { m_bumpMap.Set(textureId); }
    void SetPointStyleMarker(PointStyleMarkerTypeEnum marker) { m_pointStyleMarker.Set(marker); }
    void SetPointStyleMarkerSize(double const& size) { m_pointStyleMarkerSize.Set(size); }
    void SetCurveStyleFont(CurveStyleFontTypeEnum font) { m_curveStyleFont.Set(font); }
    void SetCurveStyleWidth(double const& width) { m_curveStyleWidth.Set(width); }
    void SetCurveStyleFillArea(CurveStyleFillTypeEnum fill) { m_curveStyleFillArea.Set(fill); }

private:
    SpecifiedValue<Color> m_diffuseColor;
    SpecifiedValue<UTF8String> m_diffuseTexture;
    SpecifiedValue<double> m_diffuseFactor;
    SpecifiedValue<Color> m_ambientColor;
    SpecifiedValue<UTF8String> m_ambientTexture;
    SpecifiedValue<double> m_ambientFactor;
    SpecifiedValue<Color> m_emissionColor;
    SpecifiedValue<UTF8String> m_emissionTexture;
    SpecifiedValue<double> m_emissionFactor;
    SpecifiedValue<Color> m_specularColor;
    SpecifiedValue<UTF8String> m_specularTexture;
    SpecifiedValue<double> m_specularFactor;
    SpecifiedValue<double> m_shininess;
    SpecifiedValue<ShadingModelType> m_shaderType;
    SpecifiedValue<double> m_reflection;
    SpecifiedValue<double> m_eccentricity;
    SpecifiedValue<double> m_rolloff;
    SpecifiedValue<Color> m_transparencyColor;
    SpecifiedValue<double> m_transparency;
    SpecifiedValue<UTF8String> m_bumpMap;
    SpecifiedValue<PointStyleMarkerTypeEnum> m_pointStyleMarker;
    SpecifiedValue<double> m_pointStyleMarkerSize;
    SpecifiedValue<CurveStyleFontTypeEnum> m_curveStyleFont;
    SpecifiedValue<double> m_curveStyleWidth;
    SpecifiedValue<CurveStyleFillTypeEnum> m_curveStyleFillArea;
};

}  // namespace KVR
