#pragma once

#include <tiny_gltf.h>

#include <nlohmann/json.hpp>

#include "host/export/Export.h"

namespace KVR
{

class IObject;

// What glTF has no place for, as JSON for its "extras".

tinygltf::Value ExtrasOf(nlohmann::json const& json);

/// What every object may have beside its id: "persistentId" and "properties" by their names.
void PutObjectExtras(ExportTask const& task, IObject const* object, nlohmann::json& json);

/// Of a component: its label, kind, unit, custom properties and the rest.
nlohmann::json ComponentExtras(ExportTask const& task, ModelComponent const& component);

/// The scene's layers, each with the ids of its items, and its views.
nlohmann::json LayerExtras(SceneModel const& scene);
nlohmann::json ViewExtras(ExportTask const& task);

}  // namespace KVR
