// A file of meshes in one of the formats that are imported, read strictly and leniently: a model whose indices are all
// good, or ModelError.

#include <cstdlib>
#include <string_view>
#include <vector>

#include "exchange/meshes/CreaseNormals.h"
#include "exchange/meshes/MeshReading.h"

namespace
{

using namespace KVR;

constexpr ModelFormat kFormats[] = {ModelFormat::kStl, ModelFormat::kObj, ModelFormat::kPly, ModelFormat::kGltf};

void Expect(bool isGood)
{
    if (!isGood)
        std::abort();
}

void ExpectBelow(std::vector<std::uint32_t> const& indices, std::size_t count, bool mayBeNone)
{
    for (std::uint32_t const index : indices)
        Expect(index < count || (mayBeNone && index == MeshModel::kNone));
}

void Check(MeshModel const& model, MeshModel::Mesh const& mesh)
{
    std::size_t const corners = mesh.corners.size();
    Expect(corners % 3 == 0);
    ExpectBelow(mesh.corners, mesh.PointCount(), false);
    ExpectBelow(mesh.dots, mesh.PointCount(), false);
    for (std::vector<std::uint32_t> const& line : mesh.lines)
        ExpectBelow(line, mesh.PointCount(), false);
    Expect(mesh.cornerNormals.empty() || mesh.cornerNormals.size() == corners);
    ExpectBelow(mesh.cornerNormals, mesh.normals.size() / 3, true);
    Expect(mesh.cornerTexture.empty() || mesh.cornerTexture.size() == corners);
    ExpectBelow(mesh.cornerTexture, mesh.texture.size() / 2, true);
    Expect(mesh.materials.empty() || mesh.materials.size() == mesh.TriangleCount());
    ExpectBelow(mesh.materials, model.materials.size(), true);
    ExpectBelow({mesh.lineMaterial, mesh.dotMaterial}, model.materials.size(), true);
    Expect(mesh.pointColors.empty() || mesh.pointColors.size() == mesh.PointCount());
    Expect(mesh.triangleColors.empty() || mesh.triangleColors.size() == mesh.TriangleCount());
}

void Check(MeshModel const& model)
{
    for (MeshModel::Mesh const& mesh : model.meshes)
        Check(model, mesh);
    for (MeshModel::Material const& material : model.materials)
        ExpectBelow({material.colorTexture, material.bumpTexture}, model.textures.size(), true);
    for (MeshModel::Texture const& texture : model.textures)
        Expect(texture.image < model.images.size());
    for (std::size_t i = 0; i < model.components.size(); ++i)
    {
        for (std::size_t const mesh : model.components[i].meshes)
            Expect(mesh < model.meshes.size());
        for (MeshModel::Placement const& placement : model.components[i].placements)
            Expect(placement.component > i && placement.component < model.components.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0)
        return 0;
    std::string_view const bytes(reinterpret_cast<char const*>(data) + 1, size - 1);
    MeshReadOptions options;
    options.isLenient = (data[0] & 4) != 0;
    // There is no such folder: what a model names beside it is missing.
    options.folder = "/nonexistent";
    try
    {
        MeshModel model = ReadMeshes(bytes, "model", kFormats[data[0] % 4], options);
        Check(model);
        for (MeshModel::Mesh& mesh : model.meshes)
            AddCreaseNormals(mesh, options.creaseAngle);
        Check(model);
    }
    catch (ModelError const&)
    {
        // Damaged, and told so.
    }
    return 0;
}
