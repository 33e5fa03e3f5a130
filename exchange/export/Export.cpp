#include "exchange/ExportScene.h"

#include <fmt/format.h>

#include <Standard_Failure.hxx>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "exchange/export/ExportSideFiles.h"
#include "exchange/export/ExportTask.h"
#include "exchange/export/Formats.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/Heard.h"
#include "exchange/run/StagePlan.h"
#include "exchange/run/WorkFolder.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneProblem.h"
#include "exchange/source/SceneReading.h"
#include "exchange/source/SideFileCheck.h"
#include "framework/api/Exception.h"
#include "framework/api/UTF8String.h"
#include "framework/kernel/KernelMessages.h"
#include "inspect/query/FilteredScene.h"
#include "inspect/query/Query.h"
#include "output/SafeText.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

constexpr char kStage_Reading[] = "reading";
constexpr char kStage_Transferring[] = "transferring";
constexpr char kStage_Writing[] = "writing";

struct ExportFormat
{
    std::string_view extension;
    void (*write)(ExportTask&);
    // What comes behind the reading.
    char const* stage = kStage_Writing;
};

constexpr ExportFormat kFormats[] = {
    {".glb", &ExportGltf},
    {".gltf", &ExportGltf},
    {".stl", &ExportStl},
    {".obj", &ExportObj},
    {".ply", &ExportPly},
    {".step", &ExportStep, kStage_Transferring},
    {".stp", &ExportStep, kStage_Transferring},
    {".brep", &ExportBrep},
    {".html", &ExportView},
};

// A failure that is a sentence of its own.
class ExportError : public std::runtime_error
{
public:
    using runtime_error::runtime_error;
};

// The callback does not want work to go on that is in its midst.
struct Stopped
{
};

ExportFormat const* FormatOf(std::string const& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    auto const* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [&](ExportFormat const& format) { return format.extension == extension; });
    return found == std::end(kFormats) ? nullptr : found;
}

std::string SentenceOf(std::string const& path, Standard_Failure const& failure)
{
    return Escaped(path) + ": it could not be made of the scene: " + KernelFailureText(failure);
}

std::string SentenceOf(std::string const& path, std::exception const& error)
{
    if (dynamic_cast<ExportError const*>(&error))
        return error.what();
    if (dynamic_cast<TargetError const*>(&error))
        return Escaped(error.what());
    if (auto const* const system = dynamic_cast<std::system_error const*>(&error))
        return Escaped(path) + ": it cannot be written: " + std::generic_category().message(system->code().value());
    // What libraries say of content that they were not made for is no sentence.
    bool const isSaid = dynamic_cast<std::runtime_error const*>(&error) || dynamic_cast<Exception const*>(&error);
    return Escaped(path) + ": " + (isSaid ? Escaped(error.what()) : "the content of the scene makes no sense");
}

// The shares of the time that stages take.
Progress PlannedFor(std::string const& path, Progress const& progress)
{
    bool const isTransferred = FormatOf(path)->stage == kStage_Transferring;
    return Planned(progress,
                   {{kStage_Reading, 10}, {kStage_Transferring, isTransferred ? 50.0 : 0.0}, {kStage_Writing, 40}});
}

// What of a filter a scene has nothing for.
std::string SentenceOf(std::string const& path, SceneFilterError const& error)
{
    std::string sentence;
    for (SceneFilterError::Unmatched const& entry : error.Names())
    {
        sentence += sentence.empty() ? Escaped(path) + ": " : "; ";
        sentence +=
            entry.isLayer ? "there is nothing to take or leave out in the layer " : "nothing in it has the name ";
        sentence += '"' + Escaped(entry.name) + '"';
        for (std::size_t i = 0; i < entry.nearest.size(); ++i)
            sentence += (i == 0 ? ", the nearest are \"" : ", \"") + Escaped(entry.nearest[i]) + '"';
    }
    return sentence;
}

std::string SentenceOf(std::string const& path, QueryError const& error)
{
    return Escaped(path) + ": " + Escaped(error.what());
}

// Not the user's wish.
bool IsMissing(Scene::Cut const& cut)
{
    return cut.reason != SceneCut::kFiltered;
}

// Writes the file that is to become `target` at `path`. Nothing, when it is not to go on; else the remarks.
std::optional<std::vector<std::string>> Write(IProducer& producer, UTF8String const& rootId, std::string const& target,
                                              std::string const& path, std::string const& scenePath,
                                              ExportOptions const& options, Progress const& progress,
                                              GeometryWatch watch = {})
{
    Scene const scene = FilteredScene(producer, rootId, options.filter);
    if (scene.Root() == kNoIndex)
        throw std::runtime_error("the root of the scene is no file, assembly or part, so there is nothing to export");
    if (!Begin(progress, FormatOf(target)->stage))
        return {};
    std::filesystem::path const source(scenePath);
    ExportTask task(producer, scene, options, path, source.parent_path().string(),
                    EachPercent(
                        [&](ProgressReport const& report)
                        {
                            if (progress && !progress(report))
                                throw Stopped();
                        }),
                    std::move(watch));
    task.source = options.sourceName.empty() ? source.filename().string() : options.sourceName;
    auto const cuts = std::count_if(scene.Cuts().begin(), scene.Cuts().end(), &IsMissing);
    task.notCarried.Add("instances without a target, or in a cycle", static_cast<unsigned long long>(cuts));
    FormatOf(target)->write(task);
    std::vector<std::string> remarks = std::move(task.remarks);
    if (std::string sentence = task.notCarried.Sentence(); !sentence.empty())
        remarks.push_back(std::move(sentence));
    return remarks;
}

// What the child does.
void ExportHere(SceneOptions const& sceneOptions, std::string const& target, std::string const& path,
                ExportOptions const& options, std::set<std::string> const& leftOut, ChildVoice const& voice)
{
    try
    {
        SceneFile file(sceneOptions);
        SceneReading const reading = SceneReading::Of(file);
        if (reading.failure)
            throw ExportError(SceneProblem(sceneOptions, *reading.failure));
        if (!reading.rootId)
            throw ExportError(Escaped(sceneOptions.path) +
                              ": the scene has no root file, so there is nothing to export");
        for (std::string const& problem : reading.sideFileProblems)
            voice.Remark(Escaped(problem));
        auto const tell = [&](ProgressReport const& report)
        {
            voice.Progress(report);
            return true;
        };
        auto const remarks = Write(file.Producer(), *reading.rootId, target, path, sceneOptions.path, options, tell,
                                   {[&](std::string const& id) { voice.Subject(id); }, leftOut});
        for (std::string const& remark : remarks.value())
            voice.Remark(remark);
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (SceneFilterError const& error)
    {
        throw ExportError(SentenceOf(sceneOptions.path, error));
    }
    catch (QueryError const& error)
    {
        throw ExportError(SentenceOf(sceneOptions.path, error));
    }
    catch (std::exception const& error)
    {
        throw ExportError(SentenceOf(target, error));
    }
    catch (Standard_Failure const& failure)
    {
        throw ExportError(SentenceOf(target, failure));
    }
}

// Where Open CASCADE ends the child, the piece of geometry that it worked on is left out, and another child begins.
void ExportInChildren(SceneOptions const& scene, std::string const& path, WorkFolder const& folder,
                      ExportOptions const& options, ChildLimits const& limits, Progress const& progress,
                      ExportResult& result)
{
    constexpr std::size_t kMostLeftOut = 3;
    std::set<std::string> leftOut;
    std::vector<std::string> remarks;
    for (;;)
    {
        ChildResult child = RunInChild(
            [&](ChildVoice const& voice)
            {
                ExportHere(scene, path, folder.Inside().string(), options, leftOut, voice);
                return std::string();
            },
            progress, limits);
        if (child.isCancelled)
            return;
        if (child.answer)
        {
            remarks.insert(remarks.end(), child.remarks.begin(), child.remarks.end());
            result = {Outcome::kDone, {}, std::move(remarks)};
            return;
        }
        std::string const ended = "its writer ended " + child.EndText();
        std::string const subject = Escaped(child.subject);
        if (child.isOutOfMemory)
            throw ExportError(Escaped(scene.path) + ": " + *child.failure);
        if (child.failure)
            throw ExportError(*child.failure);
        if (subject.empty() || child.hasStalled || leftOut.size() == kMostLeftOut)
        {
            std::string const place = subject.empty() ? std::string() : ", at " + subject;
            throw ExportError(fmt::format("{}: {}{}; nothing was written", Escaped(path), ended, place));
        }
        remarks.push_back(fmt::format("{} is left out, since with it {}", subject, ended));
        leftOut.insert(child.subject);
        folder.Clear();
    }
}

// Runs work that writes into a folder and fills the result, and gives its files their places when it is done. None of
// them may be a source, nor, unless that is wanted, take the place of a file that an earlier export has not written.
template <class Work>
ExportResult ExportTo(std::string const& path, std::vector<std::string> const& sources, bool replacesForeign,
                      Progress const& progress, Work const& work)
{
    ExportResult result;
    try
    {
        if (!FormatOf(path))
            throw ExportError(Escaped(path) + ": it has none of the extensions " + ExportFormats());
        Progress const planned = PlannedFor(path, progress);
        result.outcome = Outcome::kCancelled;
        if (!Begin(planned, kStage_Reading))
            return result;
        WorkFolder const folder(path, sources);
        // What is in the way is better known before the work than after it.
        if (!replacesForeign)
            ExpectOwnSideFiles(folder.Target(), ExportSideFileNames(folder.Target()));
        work(folder, planned, result);
        if (result.outcome == Outcome::kDone && !replacesForeign)
            ExpectOwnSideFiles(folder.Target(), folder.Names());
        if (result.outcome == Outcome::kDone)
            folder.MoveIntoPlace();
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (SceneFilterError const& error)
    {
        result = {Outcome::kFailed, SentenceOf(path, error), {}};
    }
    catch (std::exception const& error)
    {
        result = {Outcome::kFailed, SentenceOf(path, error), {}};
    }
    catch (Standard_Failure const& failure)
    {
        result = {Outcome::kFailed, SentenceOf(path, failure), {}};
    }
    catch (Stopped const&)
    {
        // Nothing was given its place.
    }
    return result;
}

}  // namespace

void ExportTask::NextOccurrence()
{
    if (m_allOccurrences == 0)
        m_allOccurrences = SceneTotals::Of(scene).occurrences;
    // Some formats go through them twice.
    auto const met = static_cast<double>(m_occurrences++ % m_allOccurrences);
    tell(kStage_Writing, met / static_cast<double>(m_allOccurrences));
}

bool IsExportFormat(std::string const& path)
{
    return FormatOf(path) != nullptr;
}

std::string ExportFormats()
{
    std::string text;
    for (ExportFormat const& format : kFormats)
        text += (text.empty() ? "" : " ") + std::string(format.extension);
    return text;
}

ExportResult ExportScene(SceneOptions const& scene, std::string const& path, ExportOptions const& options,
                         Progress const& progress)
{
    std::vector<std::string> sources = SideFileCheck::PathsOf(scene.path);
    sources.push_back(scene.path);
    ChildLimits const limits = ChildLimits::For(sources, options.timeout);
    auto const work = [&](Progress const& heard)
    {
        return ExportTo(path, sources, options.force, heard,
                        [&](WorkFolder const& folder, Progress const& planned, ExportResult& result)
                        { ExportInChildren(scene, path, folder, options, limits, planned, result); });
    };
    return Heard(progress, work);
}

ExportResult ExportScene(IProducer& producer, UTF8String const& rootId, std::string const& path,
                         ExportOptions const& options, Progress const& progress)
{
    auto const work = [&](Progress const& heard)
    {
        return ExportTo(path, {}, options.force, heard,
                        [&](WorkFolder const& folder, Progress const& planned, ExportResult& result)
                        {
                            auto remarks =
                                Write(producer, rootId, path, folder.Inside().string(), {}, options, planned);
                            if (remarks)
                                result = {Outcome::kDone, {}, std::move(*remarks)};
                        });
    };
    return Heard(progress, work);
}

}  // namespace KVR
