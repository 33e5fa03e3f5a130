#pragma once

#include <optional>
#include <vector>

#include "exchange/meshes/GltfFile.h"

namespace KVR
{

/// The materials of a glTF document, each in its place in the model's list.
class GltfFileMaterials
{
public:
    explicit GltfFileMaterials(GltfFile& file);

    /// Red, green, blue and opacity as the document has them: linear, and opaque where it says so.
    MeshModel::Color const& LinearColorOf(std::size_t material) const { return m_linear[material]; }
    /// Of a linear colour.
    static MeshModel::Color Srgb(MeshModel::Color const& linear);

private:
    void Read(GltfFile::Json const& material);
    std::uint32_t TextureOf(GltfFile::Json const& info);
    std::optional<std::size_t> ImageOf(std::size_t image);
    void CountOthers(GltfFile::Json const& material, GltfFile::Json const& pbr);

    GltfFile& m_file;
    MeshModel& m_model;
    std::vector<MeshModel::Color> m_linear;
    // The model's image for each of the document's; nothing for one that was not looked for.
    std::vector<std::optional<std::size_t>> m_images;
};

}  // namespace KVR
