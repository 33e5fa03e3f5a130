#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <optional>
#include <stdexcept>

#include "exchange/certify/FactReaders.h"

namespace KVR::Certification
{

namespace
{

FactPoint PointOf(aiVector3D const& point)
{
    return {static_cast<double>(point.x), static_cast<double>(point.y), static_cast<double>(point.z)};
}

std::optional<std::string> ColorOf(aiScene const& scene, aiMesh const& mesh)
{
    aiMaterial const& material = *scene.mMaterials[mesh.mMaterialIndex];
    aiString name;
    aiColor3D color;
    // That which assimp gives to what has none.
    if (material.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS && name == aiString(AI_DEFAULT_MATERIAL_NAME))
        return {};
    if (material.Get(AI_MATKEY_COLOR_DIFFUSE, color) != aiReturn_SUCCESS)
        return {};
    float opacity = 1.0F;
    material.Get(AI_MATKEY_OPACITY, opacity);
    return ColorText(static_cast<double>(color.r), static_cast<double>(color.g), static_cast<double>(color.b),
                     static_cast<double>(opacity));
}

// The colour of the three corners where they have the same.
std::optional<std::string> ColorOfCorners(aiMesh const& mesh, unsigned a, unsigned b, unsigned c)
{
    aiColor4D const* const colors = mesh.mColors[0];
    if (!colors || colors[a] != colors[b] || colors[a] != colors[c])
        return {};
    return ColorText(static_cast<double>(colors[a].r), static_cast<double>(colors[a].g),
                     static_cast<double>(colors[a].b), static_cast<double>(colors[a].a));
}

}  // namespace

ModelFacts FactsOfTriangles(std::string const& path, double millimetres)
{
    Assimp::Importer importer;
    aiScene const* const scene = importer.ReadFile(path, 0);
    if (!scene)
        throw std::runtime_error(importer.GetErrorString());
    ModelFacts facts;
    facts.hasMesh = true;
    // STL has no colours.
    if (!path.ends_with("stl") && !path.ends_with("STL"))
        facts.tables[kTable_DrawnColors];
    ModelFacts::Occurrence& part = facts.occurrences.emplace_back();
    part.isPart = true;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i)
    {
        aiMesh const& mesh = *scene->mMeshes[i];
        // PLY files have those of corners alone, and assimp gives all others the same.
        std::optional<std::string> const color =
            path.ends_with("ply") || path.ends_with("PLY") ? std::nullopt : ColorOf(*scene, mesh);
        for (unsigned k = 0; k < mesh.mNumFaces; ++k)
        {
            aiFace const& face = mesh.mFaces[k];
            for (unsigned corner = 2; corner < face.mNumIndices; ++corner)
            {
                unsigned const places[3] = {face.mIndices[0], face.mIndices[corner - 1], face.mIndices[corner]};
                FactPoint points[3];
                for (std::size_t at = 0; at < 3; ++at)
                {
                    points[at] = PointOf(mesh.mVertices[places[at]]);
                    for (double& x : points[at])
                        x *= millimetres;
                    part.mesh.AddPoint(points[at]);
                }
                double const before = part.mesh.area;
                part.mesh.AddTriangle(points[0], points[1], points[2]);
                ++part.triangles;
                std::optional<std::string> const own = ColorOfCorners(mesh, places[0], places[1], places[2]);
                if (own || (color && !mesh.mColors[0]))
                    facts.Add(kTable_DrawnColors, ModelFacts::Joined({}, own ? *own : *color),
                              {part.mesh.area - before});
            }
        }
    }
    part.mesh.absoluteVolume = std::abs(part.mesh.volume);
    return facts;
}

}  // namespace KVR::Certification
