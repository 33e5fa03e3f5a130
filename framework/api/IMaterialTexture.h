#pragma once

#include "framework/api/IObject.h"

namespace KVR
{

class Color;
class Matrix3d;

/// A texture map that styles refer to. What the scene does not state is not specified, with the outputs left alone;
/// what it states is served as it stands. Integers without a type of their own have a meaning that the format leaves
/// open. `kvr` neither writes nor applies what places a texture on a surface, from TextureCenter to RepeatV.
class KVR_API IMaterialTexture : public IObject
{
public:
    ~IMaterialTexture() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The kind of the texture.
    virtual IsValueSpecifiedEnum TextureType(int& type) const = 0;
    /// The file that the texture came from, as the scene has it, whether there is such a file or not.
    virtual IsValueSpecifiedEnum TextureFileReference(UTF16String& reference) const = 0;
    /// The size of the image in bytes, as the scene has it: nobody compares it with the file.
    virtual IsValueSpecifiedEnum EmbeddedTextureImageSize(int& size) const = 0;
    /// Reads the first `size` bytes of the image into the caller's buffer, which holds at least that many, from
    /// whatever regular file the scene names, anew each time. Not specified without a file and for one with fewer
    /// bytes, which may be in the buffer. Kept: a file that cannot be opened answers "specified" and leaves the buffer
    /// alone.
    virtual IsValueSpecifiedEnum EmbeddedTextureImage(int size, void* buffer) const = 0;
    /// The format of the image.
    virtual IsValueSpecifiedEnum EmbeddedTextureImageType(int& type) const = 0;
    /// Width and height of the image in pixels.
    virtual IsValueSpecifiedEnum TextureDimensions(int& width, int& height) const = 0;
    /// The point about which the texture is turned and scaled; the format states no unit.
    virtual IsValueSpecifiedEnum TextureCenter(double& x, double& y) const = 0;
    /// How far the texture is moved; the format states no unit.
    virtual IsValueSpecifiedEnum TextureOffset(double& x, double& y) const = 0;
    /// By how much the texture is scaled in each direction.
    virtual IsValueSpecifiedEnum TextureScale(double& x, double& y) const = 0;
    /// The size that the scale refers to; the format states no unit.
    virtual IsValueSpecifiedEnum TextureSizeForScale(double& x, double& y) const = 0;
    /// How far the texture is turned; the format states no unit, and authoring writes radians.
    virtual IsValueSpecifiedEnum RotateAngle(double& angle) const = 0;
    /// How the texture is projected onto a surface.
    virtual IsValueSpecifiedEnum ProjectType(int& type) const = 0;
    /// How the texture goes on beyond its edge in the first direction.
    virtual IsValueSpecifiedEnum ProcedureU(int& procedure) const = 0;
    /// How often the texture repeats in the first direction.
    virtual IsValueSpecifiedEnum RepeatU(double& repeat) const = 0;
    /// How the texture goes on beyond its edge in the second direction.
    virtual IsValueSpecifiedEnum ProcedureV(int& procedure) const = 0;
    /// How often the texture repeats in the second direction.
    virtual IsValueSpecifiedEnum RepeatV(double& repeat) const = 0;
    /// The name of the procedure of a texture that is computed.
    virtual IsValueSpecifiedEnum ProceduralName(UTF16String& name) const = 0;
    /// A colour that tints the texture; not specified for every texture of a scene.
    virtual IsValueSpecifiedEnum TintColor(Color& color) const = 0;
    /// The id of an asset that the texture comes from; empty for every texture of a scene.
    virtual UTF8String AssetId() const = 0;
    /// A transform of texture space; not specified for every texture of a scene.
    virtual IsValueSpecifiedEnum TextureTransform(Matrix3d& transform) const = 0;
};

}  // namespace KVR
