#pragma once

namespace KVR
{

struct DumpContext;
class IMaterialTexture;
class IRenderStyle;

// Styles and textures. Each writes the members of one object; the caller opens and closes it.

/// A style from a material library too, with its material.
void DumpRenderStyle(DumpContext const& context, IRenderStyle const& style);
/// The embedded image itself is left out: its size is a bare word of the scene, and it is the content of any file that
/// the scene names.
void DumpMaterialTexture(DumpContext const& context, IMaterialTexture const& texture);

}  // namespace KVR
