#include "bench/MeshImporters.h"

#include <stdexcept>

#ifdef KVR_BENCH_ASSIMP
#include <assimp/scene.h>
#include <assimp/Importer.hpp>
#endif
#ifdef KVR_BENCH_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace KVR::Bench
{

namespace
{

#ifdef KVR_BENCH_ASSIMP
unsigned long long ReadWithAssimp(std::filesystem::path const& path)
{
    // What it read stays in memory to the end of the process, as with the others.
    auto* const importer = new Assimp::Importer;
    aiScene const* const scene = importer->ReadFile(path.string(), 0);
    if (!scene)
        throw std::runtime_error(importer->GetErrorString());
    unsigned long long triangles = 0;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i)
        triangles += scene->mMeshes[i]->mNumFaces;
    return triangles;
}
#endif

#ifdef KVR_BENCH_TINYGLTF
unsigned long long ReadWithTinyGltf(std::filesystem::path const& path)
{
    auto* const model = new tinygltf::Model;
    tinygltf::TinyGLTF loader;
    std::string error;
    std::string warning;
    if (!loader.LoadBinaryFromFile(model, &error, &warning, path.string()))
        throw std::runtime_error(error);
    unsigned long long triangles = 0;
    for (tinygltf::Mesh const& mesh : model->meshes)
        for (tinygltf::Primitive const& primitive : mesh.primitives)
            triangles += model->accessors.at(static_cast<std::size_t>(primitive.indices)).count / 3;
    return triangles;
}
#endif

}  // namespace

std::vector<MeshImporter> MeshImporters()
{
    std::vector<MeshImporter> importers;
#ifdef KVR_BENCH_ASSIMP
    for (char const* const format : {"glb", "ply", "stl"})
        importers.push_back({"assimp", format, &ReadWithAssimp});
#endif
#ifdef KVR_BENCH_TINYGLTF
    importers.push_back({"tinygltf", "glb", &ReadWithTinyGltf});
#endif
    return importers;
}

}  // namespace KVR::Bench
