#pragma once

#include <tiny_gltf.h>

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "exchange/export/GltfBuffers.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IMaterialTexture;

/// What a primitive is drawn as; they differ in what a material may have.
enum class GltfSurface
{
    kPlain,
    /// With places in textures.
    kTextured,
    /// Curves and points.
    kCurve
};

/// Adds the materials of a glTF document, each once, with their textures.
class GltfMaterials
{
public:
    /// Images that are not embedded in the document's buffer keep their bytes: they are for files beside it.
    GltfMaterials(ExportTask& task, tinygltf::Model& model, bool embedsImages)
        : m_task(task), m_model(model), m_buffers(model), m_embedsImages(embedsImages)
    {
    }

    /// The material of a style; null is none. Images that are not there or that glTF cannot hold are remarked.
    int Of(SceneStyle const* style, GltfSurface surface);

private:
    int Make(SceneStyle const* style, GltfSurface surface);
    /// The texture of an id; -1 for none.
    int TextureOf(UTF8String const& id);
    int MakeTexture(UTF8String const& id);
    int SamplerOf(IMaterialTexture const& texture);
    void AddTextures(tinygltf::Material& material, SceneStyle const& style);

    ExportTask& m_task;
    tinygltf::Model& m_model;
    GltfBuffers m_buffers;
    bool m_embedsImages;
    /// By style, whether it is a curve's own colour, and whether it has textures.
    std::map<std::tuple<SceneStyle const*, bool, bool>, int> m_materials;
    std::map<std::string, int, std::less<>> m_textures;
};

/// Notes in a document that it has an extension.
void UseExtension(tinygltf::Model& model, std::string const& name);

}  // namespace KVR
