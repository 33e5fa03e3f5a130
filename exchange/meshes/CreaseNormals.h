#pragma once

#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// Gives the corners that have no normal one: that of their own triangle and of those around the point that are turned
/// from it by no more than the angle, in degrees, weighted by their angles at the point. No edge that is sharper is
/// smoothed over. Points count as one where they lie at the same place.
void AddCreaseNormals(MeshModel::Mesh& mesh, double angle);

}  // namespace KVR
