#include "host/diff/ComparisonPage.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "describe/ReferenceWalk.h"
#include "exchange/ExportScene.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/IProducer.h"
#include "host/diff/ComparisonFrame.h"
#include "host/diff/PairedProducer.h"
#include "inspect/Compare.h"
#include "output/ScratchFolder.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// The path of a document with the text.
std::string Written(std::string const& text, ScratchFolder const& folder)
{
    std::string path = (folder.Path() / "frame.xml").string();
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("temporary files cannot be written");
    return path;
}

// The ids of objects in a reading of the same scene under a prefix: both walks go the same way.
ComparisonFrame::NewIds NewIdsOf(IProducer& producer, IProducer& prefixed)
{
    ComparisonFrame::NewIds ids;
    ReferenceWalk walk(producer);
    ReferenceWalk other(prefixed);
    walk.Reach(producer.RootObjectId().Id());
    other.Reach(prefixed.RootObjectId().Id());
    while (walk.Next() && other.Next())
        if (walk.Object() && other.Object())
            ids.emplace(walk.Id().View(), other.Id().View());
    return ids;
}

}  // namespace

std::string WriteComparisonPage(SceneComparison const& comparison, IProducer& first, SceneOptions const& firstOptions,
                                IProducer& second, std::string const& secondPath, std::string const& target,
                                std::vector<std::string>& remarks)
{
    SceneOptions options = firstOptions;
    options.prefix = PairedProducer::kWas;
    SceneFile prefixed(options);
    if (SceneReading const reading = SceneReading::Of(prefixed); reading.failure || !reading.rootId)
        return "\"" + options.path + "\" could not be read once more";
    Scene const was(prefixed.Producer(), prefixed.Producer().RootObjectId().Id());
    Scene const is(second, second.RootObjectId().Id());
    std::string const title =
        fs::path(firstOptions.path).filename().string() + " -> " + fs::path(secondPath).filename().string();
    ComparisonFrame const frame(comparison, was, NewIdsOf(first, prefixed.Producer()), is, title);
    ScratchFolder const folder(fs::temp_directory_path(), "kvr-diff-");
    SceneOptions frameOptions;
    frameOptions.path = Written(frame.Document(), folder);
    SceneFile frameFile(frameOptions);
    SceneReading const reading = SceneReading::Of(frameFile);
    if (reading.failure || !reading.rootId)
        return "the two scenes could not be put together";
    PairedProducer paired(frameFile.Producer(), prefixed.Producer(), second);
    ExportOptions exportOptions;
    exportOptions.filter.only = frame.Shown();
    exportOptions.sourceName = title;
    ExportResult const result = ExportScene(paired, *reading.rootId, target, exportOptions);
    if (result.outcome != Outcome::kDone)
        return result.failure.empty() ? "it was not written" : result.failure;
    remarks.insert(remarks.end(), result.remarks.begin(), result.remarks.end());
    return {};
}

}  // namespace KVR
