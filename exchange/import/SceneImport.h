#pragma once

#include <optional>
#include <string>

#include "exchange/import/Losses.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// How finely bodies are meshed: a length in the model's unit, or a fraction of the diagonal of the model's box.
struct Deflection
{
    double value = 1e-3;
    bool isFraction = true;
};

struct SceneImportOptions
{
    Deflection deflection;
    bool withMeshes = true;
    bool withBreps = true;
    /// Whether kernel stores are texts.
    bool asText = false;
};

/// What became of a model.
struct ImportReport
{
    Losses losses;
    std::size_t assemblies = 0;
    std::size_t parts = 0;
    std::size_t instances = 0;
    std::size_t bodies = 0;
    std::size_t triangles = 0;
    /// In the model's unit; 0 when nothing was meshed.
    double deflection = 0.0;
};

/// Writes the scene of a model. The model's file is named in the scene by `modelPath`. Throws what the writers of the
/// authoring library throw, and Open CASCADE's exceptions.
ImportReport WriteSceneOf(ModelDocument const& model, std::string const& modelPath, std::string const& scenePath,
                          SceneImportOptions const& options);

}  // namespace KVR
