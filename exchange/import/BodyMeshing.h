#pragma once

#include "exchange/ImportModel.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/run/StageProgress.h"

namespace KVR
{

/// Meshes the bodies of all components of a model at one measure; they may share faces. Answers how far triangles may
/// be from bodies, in the model's unit; 0 when there is nothing to mesh. Tells the stage "meshing". Throws ModelError
/// for a length that is absurd beside the model.
double MeshBodies(ProductPlan const& plan, MeshQuality const& quality, TellStage const& tell);

}  // namespace KVR
