#include "exchange/ConvertModel.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "exchange/run/Heard.h"
#include "exchange/run/StagePlan.h"
#include "output/SafeText.h"
#include "output/ScratchFolder.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// The share of the import in the time of both steps.
constexpr double kImportShare = 0.75;

// The second step, of a scene that is there.
void Export(std::string const& scenePath, std::string const& path, ConvertOptions const& options,
            Progress const& progress, ConvertResult& result)
{
    SceneOptions scene = options.scene;
    scene.path = scenePath;
    result.exported = ExportScene(scene, path, options.exportation, progress);
    result.outcome = result.exported.outcome;
    result.failure = result.exported.failure;
}

// Both steps, with the scene at that path.
void ConvertBy(std::string const& scenePath, std::string const& modelPath, std::string const& path,
               ConvertOptions const& options, Progress const& progress, ConvertResult& result)
{
    result.imported = ImportModel(modelPath, scenePath, options.import, PartOf(progress, 0.0, kImportShare));
    result.outcome = result.imported->outcome;
    result.failure = result.imported->failure;
    if (result.outcome != Outcome::kDone)
        return;
    // Nobody knows the scene on the way.
    ConvertOptions named = options;
    if (named.exportation.sourceName.empty())
        named.exportation.sourceName = fs::path(modelPath).filename().string();
    Export(scenePath, path, named, PartOf(progress, kImportShare, 1.0), result);
}

ConvertResult Convert(std::string const& modelPath, std::string const& path, ConvertOptions const& options,
                      Progress const& progress)
{
    ConvertResult result;
    // What is wrong with the target is better known before the work than in its midst.
    if (!IsExportFormat(path))
        result.failure = Escaped(path) + ": it has none of the extensions " + ExportFormats();
    else if (std::error_code ignored; fs::equivalent(path, modelPath, ignored))
        result.failure = Escaped(path) + ": it is " + Escaped(modelPath) + ", which is being read";
    else if (IsScenePath(modelPath))
        Export(modelPath, path, options, progress, result);
    else if (options.scenePath)
        ConvertBy(*options.scenePath, modelPath, path, options, progress, result);
    else
        try
        {
            ScratchFolder const folder(fs::temp_directory_path(), "kvr-convert-");
            ConvertBy((folder.Path() / "scene.xml").string(), modelPath, path, options, progress, result);
        }
        catch (std::system_error const& error)
        {
            result.failure = "the folder for temporary files cannot be written: " +
                             std::generic_category().message(error.code().value());
        }
    return result;
}

}  // namespace

ConvertResult ConvertModel(std::string const& modelPath, std::string const& path, ConvertOptions const& options,
                           Progress const& progress)
{
    return Heard(progress, [&](Progress const& heard) { return Convert(modelPath, path, options, heard); });
}

bool IsScenePath(std::string const& path)
{
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension == ".xml";
}

}  // namespace KVR
