#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/Export.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/Progress.h"

namespace KVR
{

struct ConvertOptions
{
    ImportOptions import;
    /// Its `quality` is that of bodies which the scene has no meshes of.
    ExportOptions exportation;
    /// How a scene is read, for a model that is one; the path in it does not count.
    SceneOptions scene;
    /// Where the scene stays; nowhere unless given.
    std::optional<std::string> scenePath;
};

/// What came of a conversion. All texts are UTF-8.
struct ConvertResult
{
    Outcome outcome = Outcome::kFailed;
    /// What stood in the way, in one sentence without its full stop that names the file: safe to be shown on a
    /// terminal. Empty unless the conversion failed.
    std::string failure;
    /// What there is to know of the import, if there was one; its scene is gone unless it was to stay.
    std::optional<ImportResult> imported;
    /// What there is to know of the export.
    ExportResult exported;
};

/// Makes a file for another program of a model: ImportModel into a scene, which goes again unless it is to stay, and
/// ExportScene of that. A path that ends in ".xml", in whatever case, is a scene already, and only exported. The scene
/// on the way stands in a folder for temporary files. A target that is the model, by whatever name or link, is a
/// failure. When either step fails there is neither file nor scene; only a scene that has its place stays there when
/// the export fails. Paths, processes, progress and exceptions are as for the two steps; `whole` of the progress is
/// that of both.
KVR_EXCHANGE_API ConvertResult ConvertModel(std::string const& modelPath, std::string const& path,
                                            ConvertOptions const& options = {}, Progress const& progress = {});

/// Whether that path is taken for a scene.
KVR_EXCHANGE_API bool IsScenePath(std::string const& path);

}  // namespace KVR
