#pragma once

namespace KVR
{

// The type ids of extension data that the program writes into scenes and understands in them; docs/tool.md tells what
// stands in it.

/// On a mesh: the id of the body that it is the mesh of.
inline constexpr char kBodyTypeId[] = "kvr.body";
/// On a style: what glTF's metallic-roughness model says, as JSON.
inline constexpr char kPbrTypeId[] = "gltf.pbrMetallicRoughness";
/// On a style: what else glTF says of a material, as JSON: "alphaMode", "alphaCutoff", "doubleSided", "unlit".
inline constexpr char kMaterialTypeId[] = "gltf.material";
/// On a texture: glTF's sampler, as JSON: "magFilter", "minFilter", "wrapS", "wrapT".
inline constexpr char kSamplerTypeId[] = "gltf.sampler";
/// On a callout: "dimension", "tolerance" or "datum".
inline constexpr char kAnnotationKindTypeId[] = "kvr.annotation.kind";
/// On a callout: what it speaks of, by ids with commas between them.
inline constexpr char kAnnotationReferencesTypeId[] = "kvr.annotation.references";
/// On a callout: what AnnotationDetails tells, as JSON.
inline constexpr char kAnnotationDetailsTypeId[] = "kvr.annotation.details";

}  // namespace KVR
