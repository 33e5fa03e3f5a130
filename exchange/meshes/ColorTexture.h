#pragma once

#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// Makes a texture of the colours of a mesh's points or triangles, for a model with more colours than a scene has place
/// for in styles: four pixels for each different triangle, in whose middles its corners lie, so that what filters them
/// linearly shows the colours as they change between the corners. False, with nothing changed, for a mesh that has
/// places in a texture already, and for more triangles than kMostColoredTriangles that differ.
bool MakeColorTexture(MeshModel& model, MeshModel::Mesh& mesh);

inline constexpr std::size_t kMostColoredTriangles = std::size_t{1} << 22;

}  // namespace KVR
