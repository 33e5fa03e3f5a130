#pragma once

#include <string>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// The styles and textures of a scene, made of a mesh model's materials: one style for each, in their order.
struct MeshStyles
{
    std::vector<Authoring::StyleRecord> styles;
    std::vector<Authoring::TextureRecord> textures;

    /// The names of the files of images, in the scene's folder.
    std::vector<std::string> images;

    /// Images are written beside the scene; what is no image is counted, and left out.
    static MeshStyles Of(MeshModel const& model, std::string const& scenePath, Losses& losses);

    /// The style of a material; empty for none.
    UTF8String IdOf(std::uint32_t material) const
    {
        return material == MeshModel::kNone ? UTF8String() : styles[material].id;
    }
};

}  // namespace KVR
