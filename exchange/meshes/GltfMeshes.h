#pragma once

#include <optional>
#include <vector>

#include "exchange/meshes/GltfFileMaterials.h"
#include "exchange/meshes/LocalPlaces.h"

namespace KVR
{

/// The meshes of a glTF document. Each is one of the model's, and further ones for what has colours of its own, or is
/// of lines and points.
class GltfMeshes
{
public:
    GltfMeshes(GltfFile& file, GltfFileMaterials const& materials);

    /// Those of the model that a mesh of the document became: read when it is asked for, once.
    std::vector<std::size_t> const& Of(std::size_t mesh);
    /// Counts what was announced and is not there.
    void Finish();

private:
    struct Primitive;

    void Read(std::size_t index);
    void ReadPrimitive(std::string const& name, GltfFile::Json const& json);
    bool ReadColors(Primitive& primitive);
    MeshModel::Mesh& MeshFor(Primitive const& primitive, std::string const& name);
    void AddTriangles(MeshModel::Mesh& mesh, Primitive& primitive);
    void AddLines(MeshModel::Mesh& mesh, Primitive& primitive);
    std::optional<std::uint32_t> PointOf(MeshModel::Mesh& mesh, Primitive& primitive, std::size_t element);
    void CountOthers(std::string_view mesh, GltfFile::Json const& json);

    GltfFile& m_file;
    MeshModel& m_model;
    GltfFileMaterials const& m_materials;
    std::vector<std::optional<std::vector<std::size_t>>> m_meshes;
    std::vector<std::size_t>* m_current = nullptr;
    LocalPlaces m_places;
    unsigned long long m_taken = 0;
    unsigned long long m_announced = 0;
    // How many more corners there may be: views that many primitives name do not multiply without end.
    std::size_t m_room = 0;
};

}  // namespace KVR
