#pragma once

#include <tiny_gltf.h>

#include "host/export/Export.h"

namespace KVR
{

/// Adds the scene's cameras to a glTF model, each with a node under the scene. `upright` turns the scene's directions
/// into glTF's. What cannot look, since it has no direction, is counted.
void AddGltfCameras(ExportTask& task, Matrix const& upright, tinygltf::Model& model);

}  // namespace KVR
