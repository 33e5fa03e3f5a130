#pragma once

#include <string>

#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// Gives the meshes of a format without structure their components: one mesh is a part of the file's name, several are
/// parts of their names in an assembly of the file's.
void MakePartsOfMeshes(MeshModel& model, std::string const& name);

/// More colours than this have no place in the styles of a scene.
inline constexpr std::size_t kMostColors = 256;

/// Makes materials of the colours of points and triangles, since a scene has a colour for each polygon at the most. A
/// triangle whose points differ gets their mean, which is counted. Where there are more than kMostColors in the model,
/// each mesh gets a texture of them; of one that cannot have it they are counted, and its materials hold.
void FoldColors(MeshModel& model);

}  // namespace KVR
