#pragma once

#include "framework/api/IMaterialTexture.h"
#include "framework/xml_util/ObjectState.h"
#include "framework/xml_util/SpecifiedValue.h"

namespace KVR
{

/// A texture, each value as the scene has it. A value is specified once its setter was called. It holds the path of its
/// image, never the image, and leaves the file alone.
class XMLTexture : public ObjectState<IMaterialTexture>
{
public:
    XMLTexture(UTF8String const& id, UTF16String const& label);
    ~XMLTexture() override;

    IsValueSpecifiedEnum TextureType(int& type) const override { return m_textureType.Get(type); }
    IsValueSpecifiedEnum TextureFileReference(UTF16String& reference) const override
    {
        return m_textureFileReference.Get(reference);
    }
    IsValueSpecifiedEnum EmbeddedTextureImageSize(int& size) const override
    {
        return m_embeddedTextureImageSize.Get(size);
    }
    /// Opens the image's file anew for each call; its path is taken as it stands, not from the scene's folder. Not
    /// specified without a path, and when the file holds fewer bytes than asked for: those that it holds stand in the
    /// buffer then. Specified, with the buffer left alone, when the file cannot be opened.
    IsValueSpecifiedEnum EmbeddedTextureImage(int size, void* buffer) const override;
    IsValueSpecifiedEnum EmbeddedTextureImageType(int& type) const override
    {
        return m_embeddedTextureImageType.Get(type);
    }
    IsValueSpecifiedEnum TextureDimensions(int& width, int& height) const override
    {
        return m_textureDimensions.Get(width, height);
    }
    IsValueSpecifiedEnum TextureCenter(double& x, double& y) const override { return m_textureCenter.Get(x, y); }
    IsValueSpecifiedEnum TextureOffset(double& x, double& y) const override { return m_textureOffset.Get(x, y); }
    IsValueSpecifiedEnum TextureScale(double& x, double& y) const override { return m_textureScale.Get(x, y); }
    IsValueSpecifiedEnum TextureSizeForScale(double& x, double& y) const override
    {
        return m_textureSizeForScale.Get(x, y);
    }
    IsValueSpecifiedEnum RotateAngle(double& angle) const override { return m_rotateAngle.Get(angle); }
    IsValueSpecifiedEnum ProjectType(int& type) const override { return m_projectType.Get(type); }
    IsValueSpecifiedEnum ProcedureU(int& procedure) const override { return m_procedureU.Get(procedure); }
    IsValueSpecifiedEnum RepeatU(double& repeat) const override { return m_repeatU.Get(repeat); }
    IsValueSpecifiedEnum ProcedureV(int& procedure) const override { return m_procedureV.Get(procedure); }
    IsValueSpecifiedEnum RepeatV(double& repeat) const override { return m_repeatV.Get(repeat); }
    IsValueSpecifiedEnum ProceduralName(UTF16String& name) const override { return m_proceduralName.Get(name); }
    // What a scene has no words for.
    IsValueSpecifiedEnum TintColor(Color&) const override { return kIsValueSpecified_No; }
    UTF8String AssetId() const override { return {}; }
    IsValueSpecifiedEnum TextureTransform(Matrix3d&) const override { return kIsValueSpecified_No; }

    void SetTextureType(int type) { m_textureType.Set(type); }
    void SetTextureFileReference(UTF16String const& reference) { m_textureFileReference.Set(reference); }
    void SetEmbeddedTextureImageSize(int size) { m_embeddedTextureImageSize.Set(size); }
    void SetEmbeddedTextureImageType(int type) { m_embeddedTextureImageType.Set(type); }
    void SetRotateAngle(double angle) { m_rotateAngle.Set(angle); }
    void SetProjectType(int type) { m_projectType.Set(type); }
    void SetProcedureU(int procedure) { m_procedureU.Set(procedure); }
    void SetRepeatU(double repeat) { m_repeatU.Set(repeat); }
    void SetProcedureV(int procedure) { m_procedureV.Set(procedure); }
    void SetRepeatV(double repeat) { m_repeatV.Set(repeat); }
    void SetProceduralName(UTF16String const& name) { m_proceduralName.Set(name); }
    void SetImageFilePath(UTF8String const& path) { m_imageFilePath.Set(path); }
    void SetTextureDimensions(int width, int height) { m_textureDimensions.Set(width, height); }
    void SetTextureCenter(double x, double y) { m_textureCenter.Set(x, y); }
    void SetTextureOffset(double x, double y) { m_textureOffset.Set(x, y); }
    void SetTextureScale(double x, double y) { m_textureScale.Set(x, y); }
    void SetTextureSizeForScale(double x, double y) { m_textureSizeForScale.Set(x, y); }

private:
    SpecifiedValue<int> m_textureType;
    SpecifiedValue<UTF16String> m_textureFileReference;
    SpecifiedValue<int> m_embeddedTextureImageSize;
    SpecifiedValue<int> m_embeddedTextureImageType;
    SpecifiedValue<double> m_rotateAngle;
    SpecifiedValue<int> m_projectType;
    SpecifiedValue<int> m_procedureU;
    SpecifiedValue<double> m_repeatU;
    SpecifiedValue<int> m_procedureV;
    SpecifiedValue<double> m_repeatV;
    SpecifiedValue<UTF16String> m_proceduralName;
    SpecifiedValue<UTF8String> m_imageFilePath;
    SpecifiedPair<int> m_textureDimensions;
    SpecifiedPair<double> m_textureCenter;
    SpecifiedPair<double> m_textureOffset;
    SpecifiedPair<double> m_textureScale;
    SpecifiedPair<double> m_textureSizeForScale;
};

}  // namespace KVR
