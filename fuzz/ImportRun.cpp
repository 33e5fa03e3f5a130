#include "fuzz/ImportRun.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "exchange/import/SceneImport.h"
#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "framework/api/UTF8String.h"
#include "fuzz/ContainedRun.h"
#include "fuzz/InputFile.h"

namespace KVR::Fuzz
{

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 8192;

bool IsOfFormat(std::string const& path, ModelFormat format)
{
    try
    {
        return FormatOfModel(path) == format;
    }
    catch (ModelError const&)
    {
        return false;
    }
}

}  // namespace

int RunImport(std::uint8_t const* data, std::size_t size, ModelFormat format, char const* fileName)
{
    static InputFile const file(fileName);
    if (size == 0 || size > kMostBytes)
        return 0;
    file.Write(data, size);
    std::string const path(UTF8String(file.Path()).View());
    if (!IsOfFormat(path, format))
        return 0;
    fs::path const folder = fs::path(path).parent_path() / "scene";
    fs::create_directory(folder);
    std::string const scene = (folder / "scene.xml").string();
    std::optional<ChildResult> const result = RunContained(
        [&](ChildVoice const& voice)
        {
            auto const tell = [&](ProgressReport const& report) { voice.Progress(report); };
            ModelReadOptions reading;
            reading.withAnnotations = size % 2 == 0;
            reading.isLenient = format == ModelFormat::kStep && size % 3 == 0;
            reading.progress = EachPercent(tell);
            ModelDocument const model = ModelDocument::Read(path, format, reading);
            ImportOptions importing;
            importing.asText = size % 5 == 0;
            WriteSceneOf(model, path, "model", scene, importing, reading.progress);
            return std::string();
        });
    if (result && fs::exists(scene) != result->answer.has_value())
        std::abort();
    if (result && result->failure && !IsSentence(*result->failure))
        std::abort();
    fs::remove_all(folder);
    return 0;
}

}  // namespace KVR::Fuzz
