#include "exchange/model/PlyReader.h"

#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>

#include "exchange/model/ModelError.h"

namespace KVR
{

Handle(Poly_Triangulation) ReadPly(std::string const& path)
{
    Assimp::Importer importer;
    aiScene const* const scene =
        importer.ReadFile(path, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices | aiProcess_SortByPType);
    if (!scene)
        throw ModelError("it cannot be read as PLY: " + std::string(importer.GetErrorString()));
    int nodeCount = 0;
    int triangleCount = 0;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i)
    {
        aiMesh const& mesh = *scene->mMeshes[i];
        if ((mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE) == 0)
            continue;
        nodeCount += static_cast<int>(mesh.mNumVertices);
        triangleCount += static_cast<int>(mesh.mNumFaces);
    }
    if (triangleCount == 0)
        throw ModelError("it holds no triangles");
    Handle(Poly_Triangulation) result = new Poly_Triangulation(nodeCount, triangleCount, false);
    int node = 0;
    int triangle = 0;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i)
    {
        aiMesh const& mesh = *scene->mMeshes[i];
        if ((mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE) == 0)
            continue;
        int const first = node + 1;
        for (unsigned vertex = 0; vertex < mesh.mNumVertices; ++vertex)
        {
            aiVector3D const& point = mesh.mVertices[vertex];
            result->SetNode(++node, gp_Pnt(point.x, point.y, point.z));
        }
        for (unsigned face = 0; face < mesh.mNumFaces; ++face)
        {
            unsigned const* const corners = mesh.mFaces[face].mIndices;
            result->SetTriangle(
                ++triangle, Poly_Triangle(first + static_cast<int>(corners[0]), first + static_cast<int>(corners[1]),
                                          first + static_cast<int>(corners[2])));
        }
    }
    return result;
}

}  // namespace KVR
