#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

class Color;
class Matrix3d;

/// A texture map that styles refer to. Integers without a type of their own pass through as the scene has them.
class KVR_API IMaterialTexture : public IObject
{
public:
    ~IMaterialTexture() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual IsValueSpecifiedEnum TextureType(int& type) const = 0;
    virtual IsValueSpecifiedEnum TextureFileReference(UTF16String& reference) const = 0;
    /// In bytes.
    virtual IsValueSpecifiedEnum EmbeddedTextureImageSize(int& size) const = 0;
    /// Reads `size` bytes of the image into the caller's buffer, which holds at least that many.
    virtual IsValueSpecifiedEnum EmbeddedTextureImage(int size, void* buffer) const = 0;
    virtual IsValueSpecifiedEnum EmbeddedTextureImageType(int& type) const = 0;
    /// In pixels.
    virtual IsValueSpecifiedEnum TextureDimensions(int& width, int& height) const = 0;
    virtual IsValueSpecifiedEnum TextureCenter(double& x, double& y) const = 0;
    virtual IsValueSpecifiedEnum TextureOffset(double& x, double& y) const = 0;
    virtual IsValueSpecifiedEnum TextureScale(double& x, double& y) const = 0;
    virtual IsValueSpecifiedEnum TextureSizeForScale(double& x, double& y) const = 0;
    virtual IsValueSpecifiedEnum RotateAngle(double& angle) const = 0;
    virtual IsValueSpecifiedEnum ProjectType(int& type) const = 0;
    virtual IsValueSpecifiedEnum ProcedureU(int& procedure) const = 0;
    virtual IsValueSpecifiedEnum RepeatU(double& repeat) const = 0;
    virtual IsValueSpecifiedEnum ProcedureV(int& procedure) const = 0;
    virtual IsValueSpecifiedEnum RepeatV(double& repeat) const = 0;
    virtual IsValueSpecifiedEnum ProceduralName(UTF16String& name) const = 0;
    /// A colour that tints the texture.
    virtual IsValueSpecifiedEnum TintColor(Color& color) const = 0;
    /// The id of an asset that the texture comes from; empty when there is none.
    virtual UTF8String AssetId() const = 0;
    /// A transform of texture space.
    virtual IsValueSpecifiedEnum TextureTransform(Matrix3d& transform) const = 0;
};

}  // namespace KVR
