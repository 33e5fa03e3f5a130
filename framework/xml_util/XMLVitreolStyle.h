#pragma once

#include <memory>

#include "framework/api/Color.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/Export.h"
#include "framework/xml_util/ObjectState.h"
#include "framework/xml_util/SpecifiedValue.h"

namespace KVR
{

/// A style of the material library: its ids there, its asset, and plain colours beside them. A value is specified once
/// its setter was called. Textures, point and curve styles and the other values of a plain style never are.
class KVR_XML_UTIL_API XMLVitreolStyle : public ObjectState<IVitreolRenderStyle>
{
public:
    XMLVitreolStyle(UTF8String const& id, UTF16String const& label);
    ~XMLVitreolStyle() override;

    IsValueSpecifiedEnum DiffuseColor(Color& color) const override { return m_diffuseColor.Get(color); }
    IsValueSpecifiedEnum DiffuseFactor(double& factor) const override { return m_diffuseFactor.Get(factor); }
    IsValueSpecifiedEnum AmbientColor(Color& color) const override { return m_ambientColor.Get(color); }
    IsValueSpecifiedEnum AmbientFactor(double& factor) const override { return m_ambientFactor.Get(factor); }
    IsValueSpecifiedEnum EmissionColor(Color& color) const override { return m_emissionColor.Get(color); }
    IsValueSpecifiedEnum EmissionFactor(double& factor) const override { return m_emissionFactor.Get(factor); }
    IsValueSpecifiedEnum SpecularColor(Color& color) const override { return m_specularColor.Get(color); }
    IsValueSpecifiedEnum SpecularFactor(double& factor) const override { return m_specularFactor.Get(factor); }
    IsValueSpecifiedEnum Shininess(double& shininess) const override { return m_shininess.Get(shininess); }
    using IVitreolRenderStyle::Transparency;
    IsValueSpecifiedEnum Transparency(double& transparency) const override { return m_transparency.Get(transparency); }
    VitreolSerializedAsset const* SerializedAsset() const override { return m_serializedAsset.get(); }
    IsValueSpecifiedEnum VitreolLibraryId(UTF16String& id) const override { return m_vitreolLibraryId.Get(id); }
    IsValueSpecifiedEnum AssetDefinitionId(UTF16String& id) const override { return m_assetDefinitionId.Get(id); }
    IsValueSpecifiedEnum AssetInstanceVersionGUID(UTF16String& guid) const override
    {
        return m_assetInstanceVersionGUID.Get(guid);
    }

    void SetDiffuseColor(Color const& color) { m_diffuseColor.Set(color); }
    void SetDiffuseFactor(double const& factor) { m_diffuseFactor.Set(factor); }
    void SetAmbientColor(Color const& color) { m_ambientColor.Set(color); }
    void SetAmbientFactor(double const& factor) { m_ambientFactor.Set(factor); }
    void SetEmissionColor(Color const& color) { m_emissionColor.Set(color); }
    void SetEmissionFactor(double const& factor) { m_emissionFactor.Set(factor); }
    void SetSpecularColor(Color const& color) { m_specularColor.Set(color); }
    void SetSpecularFactor(double const& factor) { m_specularFactor.Set(factor); }
    void SetShininess(double const& shininess) { m_shininess.Set(shininess); }
    void SetTransparency(double const& transparency) { m_transparency.Set(transparency); }
    /// Takes the asset over; one that the style had before is destroyed.
    void SetSerializedAsset(VitreolSerializedAsset* asset) { m_serializedAsset.reset(asset); }
    void SetVitreolLibraryId(UTF16String const& id) { m_vitreolLibraryId.Set(id); }
    void SetAssetDefinitionId(UTF16String const& id) { m_assetDefinitionId.Set(id); }
    void SetAssetInstanceVersionGUID(UTF16String const& guid) { m_assetInstanceVersionGUID.Set(guid); }

private:
    SpecifiedValue<Color> m_diffuseColor;
    SpecifiedValue<double> m_diffuseFactor;
    SpecifiedValue<Color> m_ambientColor;
    SpecifiedValue<double> m_ambientFactor;
    SpecifiedValue<Color> m_emissionColor;
    SpecifiedValue<double> m_emissionFactor;
    SpecifiedValue<Color> m_specularColor;
    SpecifiedValue<double> m_specularFactor;
    SpecifiedValue<double> m_shininess;
    SpecifiedValue<double> m_transparency;
    std::unique_ptr<VitreolSerializedAsset> m_serializedAsset;
    SpecifiedValue<UTF16String> m_vitreolLibraryId;
    SpecifiedValue<UTF16String> m_assetDefinitionId;
    SpecifiedValue<UTF16String> m_assetInstanceVersionGUID;
};

}  // namespace KVR
