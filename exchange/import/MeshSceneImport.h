#pragma once

#include <string>

#include "exchange/import/SceneImport.h"
#include "exchange/meshes/MeshModel.h"

namespace KVR
{

/// Writes the scene of a model of meshes. The model's file is named in the scene by `modelPath`, if that is not empty,
/// and by `name`. Throws what the writers of the authoring library throw.
ImportReport WriteSceneOf(MeshModel const& model, std::string const& modelPath, std::string const& name,
                          std::string const& scenePath, ImportOptions const& options);

}  // namespace KVR
