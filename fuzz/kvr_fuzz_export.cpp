// A scene that the input tells to write, whose stores are changed, exported to every format: a file, or one sentence.

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "exchange/ExportScene.h"
#include "framework/api/Exception.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "fuzz/ContainedRun.h"
#include "fuzz/HostileScene.h"
#include "fuzz/InputFile.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace
{

using namespace KVR;
namespace fs = std::filesystem;

constexpr char const* kFormats[] = {"out.glb", "out.stl", "out.obj", "out.ply", "out.step", "out.html", "out.brep"};

bool WasWritten(std::string const& scene, FuzzedDataProvider& input)
{
    try
    {
        Fuzz::WriteHostileScene(scene, input);
        return true;
    }
    catch (Exception const&)
    {
        return false;
    }
}

// The failure of the export; empty when there is none.
std::string Export(std::string const& scene, std::string const& target, ExportOptions const& options)
{
    XMLProducerOptions producing;
    XMLProducer producer(UTF16String(UTF8String(scene)), &producing);
    producer.BeginProcess(IdSet(), nullptr, nullptr);
    ExportResult const result = ExportScene(producer, UTF8String("file"), target, options);
    producer.EndProcess();
    if ((result.outcome == Outcome::kDone) != result.failure.empty())
        std::abort();
    return result.failure;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Fuzz::InputFile const file("unused");
    fs::path const folder = fs::path(UTF8String(file.Path()).Value()).parent_path() / "scene";
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    FuzzedDataProvider input(data, size);
    std::string const target = (folder / input.PickValueInArray(kFormats)).string();
    ExportOptions options;
    options.hiddenNodes = input.ConsumeBool();
    options.meshFaces = input.ConsumeBool();
    options.parameterCurves = input.ConsumeBool();
    options.compress = input.ConsumeBool() && CanCompress();
    fs::create_directory(folder);
    std::string const scene = (folder / "scene.xml").string();
    std::optional<ChildResult> const result = Fuzz::RunContained(
        [&](ChildVoice const&)
        { return WasWritten(scene, input) ? Export(scene, target, options) : std::string("it was not written"); });
    // What the producer or the export throws is a failure of the run, and none may be.
    if (result && (!result->answer || (!result->answer->empty() && !Fuzz::IsSentence(*result->answer)) ||
                   fs::exists(target) != result->answer->empty()))
        std::abort();
    fs::remove_all(folder);
    return 0;
}
