#include "host/diff/ComparisonPage.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "describe/ReferenceWalk.h"
#include "exchange/ExportScene.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/IProducer.h"
#include "host/diff/ComparisonFrame.h"
#include "host/diff/PairedProducer.h"
#include "inspect/Compare.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// A document in a folder of its own, which goes with it.
class TemporaryDocument
{
public:
    explicit TemporaryDocument(std::string const& text)
    {
        std::string folder = (fs::temp_directory_path() / "kvr-diff-XXXXXX").string();
        if (!mkdtemp(folder.data()))
            throw std::runtime_error("no folder can be made for temporary files");
        m_folder = folder;
        std::ofstream file(Path(), std::ios::binary);
        file << text;
        if (!file.flush())
            throw std::runtime_error("temporary files cannot be written");
    }
    ~TemporaryDocument()
    {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }
    TemporaryDocument(TemporaryDocument const&) = delete;
    TemporaryDocument& operator=(TemporaryDocument const&) = delete;

    std::string Path() const { return (m_folder / "frame.xml").string(); }

private:
    fs::path m_folder;
};

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
    TemporaryDocument const document(frame.Document());
    SceneOptions frameOptions;
    frameOptions.path = document.Path();
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
