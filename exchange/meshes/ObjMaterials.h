#pragma once

#include <map>
#include <string>
#include <string_view>

#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// The materials that an OBJ file uses, by their names.
class ObjMaterials
{
public:
    /// Files that it names are looked for in the folder.
    ObjMaterials(MeshModel& model, std::string folder) : m_model(model), m_folder(std::move(folder)) {}

    /// Reads a library; one that is not there is counted as a loss.
    void ReadLibrary(std::string const& name);
    /// The material of a name; one that no library has is there with its name alone.
    std::uint32_t MaterialOf(std::string const& name);

private:
    void ReadLine(std::string_view keyword, std::string_view rest, MeshModel::Material& material);
    std::uint32_t TextureOf(std::string_view statement);

    MeshModel& m_model;
    std::string m_folder;
    std::map<std::string, std::uint32_t> m_materials;
    std::map<std::string, std::uint32_t> m_images;
};

}  // namespace KVR
