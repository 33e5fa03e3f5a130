#pragma once

#include <string>

#include "exchange/ImportModel.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// What became of a model.
struct ImportReport
{
    Losses losses;
    ImportCounts counts;
    /// In the model's unit; 0 when nothing was meshed.
    double deflection = 0.0;
};

/// Writes the scene of a model. The model's file is named in the scene by `modelPath`, if that is not empty, and by
/// `name`. Tells the stages "meshing" and "writing". Throws what the writers of the authoring library throw, and Open
/// CASCADE's exceptions.
ImportReport WriteSceneOf(ModelDocument const& model, std::string const& modelPath, std::string const& name,
                          std::string const& scenePath, ImportOptions const& options, TellStage const& tell);

}  // namespace KVR
