#include "exchange/export/Export.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>

#include "exchange/export/Formats.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/WorkFolder.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneProblem.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/UTF8String.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

struct ExportFormat
{
    std::string_view extension;
    void (*write)(ExportTask&);
};

constexpr ExportFormat kFormats[] = {
    {".glb", &ExportGltf}, {".gltf", &ExportGltf}, {".stl", &ExportStl},  {".obj", &ExportObj},
    {".ply", &ExportPly},  {".step", &ExportStep}, {".stp", &ExportStep}, {".brep", &ExportBrep},
};

// What a child answers is lines, each of a letter and a text.
constexpr char kLine_Done = 'D';
constexpr char kLine_Remark = 'R';
constexpr char kLine_Error = 'E';

ExportFormat const* FormatOf(std::string const& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    auto const* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [&](ExportFormat const& format) { return format.extension == extension; });
    return found == std::end(kFormats) ? nullptr : found;
}

std::string Line(char kind, std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return kind + text + '\n';
}

std::string Unwritable(ExportOptions const& options, int errorNumber)
{
    return Line(kLine_Error,
                Escaped(options.path) + ": it cannot be written: " + std::generic_category().message(errorNumber));
}

// Not the user's wish.
bool IsMissing(Scene::Cut const& cut)
{
    return cut.reason != SceneCut::kFiltered;
}

// What the child does.
std::string ExportHere(SceneOptions const& sceneOptions, ExportOptions const& options, std::string const& path)
{
    try
    {
        SceneFile file(sceneOptions);
        SceneReading const reading = SceneReading::Of(file.Producer());
        if (reading.failure)
            return Line(kLine_Error, SceneProblem(sceneOptions, *reading.failure));
        if (!reading.rootId)
            return Line(kLine_Error,
                        Escaped(sceneOptions.path) + ": the scene has no root file, so there is nothing to export");
        Scene const scene(file.Producer(), *reading.rootId, options.filter);
        ExportTask task{file.Producer(), scene, options, path, {}};
        auto const cuts = std::count_if(scene.Cuts().begin(), scene.Cuts().end(), &IsMissing);
        task.notCarried.Add("instances without a target, or in a cycle", static_cast<unsigned long long>(cuts));
        FormatOf(options.path)->write(task);
        std::string answer = Line(kLine_Done, Escaped(options.path));
        if (std::string const sentence = task.notCarried.Sentence(); !sentence.empty())
            answer += Line(kLine_Remark, Escaped(options.path) + ": " + sentence);
        return answer;
    }
    catch (std::bad_alloc const&)
    {
        return Line(kLine_Error, Escaped(sceneOptions.path) + ": there is not enough memory to export it");
    }
    catch (std::system_error const& error)
    {
        return Unwritable(options, error.code().value());
    }
    catch (std::exception const& error)
    {
        return Line(kLine_Error, Escaped(options.path) + ": " + Escaped(error.what()));
    }
}

ExportResult ReadAnswer(std::string const& answer)
{
    ExportResult result;
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.empty())
            continue;
        if (line.front() == kLine_Remark)
            result.remarks.push_back(line.substr(1));
        else
        {
            result.isGood = line.front() == kLine_Done;
            result.sentence = line.substr(1);
        }
    }
    return result;
}

}  // namespace

void NotCarriedCounts::Add(std::string const& kind, unsigned long long count)
{
    if (count == 0)
        return;
    auto const found =
        std::find_if(m_counts.begin(), m_counts.end(), [&](auto const& entry) { return entry.first == kind; });
    if (found == m_counts.end())
        m_counts.emplace_back(kind, count);
    else
        found->second += count;
}

std::string NotCarriedCounts::Sentence() const
{
    std::string sentence;
    for (auto const& [kind, count] : m_counts)
    {
        sentence += sentence.empty() ? "not in it: " : ", ";
        sentence += std::to_string(count) + ' ' + kind;
    }
    return sentence;
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

ExportResult ExportScene(SceneOptions const& scene, ExportOptions const& options)
{
    ExportResult result;
    try
    {
        InterruptionScope const signals;
        WorkFolder const folder(options.path);
        ChildResult const child = RunInChild([&] { return ExportHere(scene, options, folder.Inside().string()); });
        if (child.isInterrupted)
        {
            result.isInterrupted = true;
            result.sentence = "interrupted; nothing was written";
            return result;
        }
        if (!child.answer)
        {
            result.sentence = Escaped(options.path) + ": its writer ended (" +
                              (child.signal != 0 ? SignalText(child.signal) : "early") + "); nothing was written";
            return result;
        }
        result = ReadAnswer(*child.answer);
        if (result.isGood)
            folder.MoveIntoPlace();
    }
    catch (std::system_error const& error)
    {
        result.isGood = false;
        result.sentence =
            Escaped(options.path) + ": it cannot be written: " + std::generic_category().message(error.code().value());
    }
    return result;
}

}  // namespace KVR
