#include "exchange/ImportModel.h"

#include <cerrno>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "exchange/import/ImportReportFile.h"
#include "exchange/import/MeshSceneImport.h"
#include "exchange/import/ModelSource.h"
#include "exchange/import/SceneImport.h"
#include "exchange/import/SceneTarget.h"
#include "exchange/meshes/MeshReading.h"
#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/ModelFormat.h"
#include "exchange/run/AnswerText.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/Heard.h"
#include "exchange/run/StagePlan.h"
#include "exchange/run/ThreadBlocks.h"
#include "framework/api/Exception.h"
#include "framework/api/LengthUnits.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr char kStage_Reading[] = "reading";

// In words, as in "millimeter".
std::string UnitWord(UnitTypeEnum unit)
{
    std::string_view text = XMLStrUtil::UnitTypeToString(unit);
    text.remove_prefix(text.find('_') + 1);
    std::string word(text);
    word.front() = static_cast<char>(word.front() - 'A' + 'a');
    return word;
}

// What the child answers: the facts of a result.
std::string AnswerOf(UnitTypeEnum unit, bool isUnitStated, ImportReport const& report)
{
    ImportCounts const& counts = report.counts;
    AnswerText answer;
    for (unsigned long long const count :
         {counts.assemblies, counts.parts, counts.instances, counts.bodies, counts.triangles})
        answer.Add(count);
    answer.Add(unit);
    answer.Add(isUnitStated);
    answer.Add(report.deflection);
    answer.Add(report.losses.Kinds().size());
    for (auto const& [name, kind] : report.losses.Kinds())
    {
        answer.Add(name);
        answer.Add(kind.count);
        answer.Add(kind.items.size());
        for (std::string const& item : kind.items)
            answer.Add(item);
    }
    return answer.Text();
}

void ReadAnswer(std::string const& answer, ImportResult& result)
{
    AnswerReader facts(answer);
    ImportCounts& counts = result.counts;
    for (auto* const count : {&counts.assemblies, &counts.parts, &counts.instances, &counts.bodies, &counts.triangles})
        *count = facts.Value<unsigned long long>();
    result.unit = facts.Value<UnitTypeEnum>();
    result.isUnitStated = facts.Value<bool>();
    result.deflection = facts.Value<double>();
    for (auto kinds = facts.Value<std::size_t>(); kinds > 0; --kinds)
    {
        ImportLoss& loss = result.losses.emplace_back();
        loss.kind = facts.Text();
        loss.count = facts.Value<unsigned long long>();
        for (auto items = facts.Value<std::size_t>(); items > 0; --items)
            loss.items.push_back(facts.Text());
    }
}

bool IsOfMeshes(ModelFormat format)
{
    return format == ModelFormat::kStl || format == ModelFormat::kObj || format == ModelFormat::kPly ||
           format == ModelFormat::kGltf;
}

// A model on its way into a scene, which a child process makes.
struct ImportWork
{
    ModelSource const& source;
    ModelFormat format;
    std::string const& scenePath;
    ImportOptions const& options;

    std::string Do(ChildVoice const& voice) const
    {
        try
        {
            return IsOfMeshes(format) ? ImportMeshes(voice) : ImportDocument(voice);
        }
        catch (FileException const&)
        {
            int const errorNumber = errno;
            throw std::runtime_error("its scene cannot be written: " + std::generic_category().message(errorNumber));
        }
    }

private:
    std::string ImportDocument(ChildVoice const& voice) const
    {
        ModelReadOptions reading;
        reading.withAnnotations = options.withAnnotations;
        reading.unit = options.unit;
        reading.isLenient = options.isLenient;
        reading.progress = EachPercent([&](ProgressReport const& report) { voice.Progress(report); });
        ThreadBlocks const blocks;
        auto model = std::make_unique<ModelDocument>(ModelDocument::Read(source.File(), format, reading));
        for (std::string const& remark : model->remarks)
            voice.Remark(remark);
        ImportReport const report =
            WriteSceneOf(*model, source.Path(), source.Name(), scenePath, options, reading.progress);
        // It goes with the process, at once.
        ModelDocument const& done = *model.release();
        return AnswerOf(done.unit, done.isUnitStated, report);
    }

    std::string ImportMeshes(ChildVoice const& voice) const
    {
        MeshReadOptions reading;
        reading.unit = options.unit;
        if (options.up)
            reading.up = static_cast<Axis>(*options.up);
        reading.creaseAngle = options.creaseAngle;
        reading.isLenient = options.isLenient;
        reading.folder = source.Folder();
        reading.progress = [&](double fraction) { voice.Progress({kStage_Reading, fraction}); };
        MeshModel const model = ReadMeshes(source.File(), format, reading);
        for (std::string const& remark : model.remarks)
            voice.Remark(remark);
        voice.Progress({"writing", std::nullopt});
        ImportReport const report = WriteSceneOf(model, source.Path(), source.Name(), scenePath, options);
        return AnswerOf(model.unit, model.isUnitStated, report);
    }
};

ChildResult ImportInChild(ImportWork const& work, Progress const& progress)
{
    return RunInChild([&](ChildVoice const& voice) { return work.Do(voice); }, progress,
                      ChildLimits::For({work.source.File()}, work.options.timeout));
}

void AddRemarks(ImportResult& result)
{
    if (!result.isUnitStated)
        result.remarks.push_back("the model states no unit of length; its numbers are taken for " +
                                 UnitWord(result.unit) + " lengths");
    for (ImportLoss const& loss : result.losses)
        result.remarks.push_back("not in the scene: " + std::to_string(loss.count) + ' ' + loss.kind);
}

ModelFormat FormatOf(ModelSource const& source, ImportOptions const& options)
{
    std::optional<ModelFormat> const format = FormatOfModel(source.File());
    if (!format)
        throw ModelError("it is in none of the formats STEP, IGES, BREP, glTF, STL, OBJ and PLY");
    if (!(MetresOf(options.unit) > 0.0))
        throw ModelError("no length is measured in the unit that it is to have");
    if (!(options.creaseAngle >= 0.0) || options.creaseAngle > 180.0)
        throw ModelError("the angle of creases is one from 0 to 180 degrees");
    if (!IsOfMeshes(*format) && options.up.value_or(UpAxis::kZ) != UpAxis::kZ)
        throw ModelError("its axes stay as they are: which one points up is said of STL, OBJ, PLY and glTF alone");
    if (options.isLenient && (*format == ModelFormat::kIges || *format == ModelFormat::kBrep))
        throw ModelError(
            "IGES and BREP files are taken whole or not at all: --lenient is for STEP and files of meshes");
    return *format;
}

ImportResult Import(std::string const& modelPath, std::string const& scenePath, ImportOptions options,
                    Progress const& progress)
{
    ImportResult result;
    ModelSource const source(modelPath, options.isLenient, progress);
    if (source.IsCancelled())
        return Ended<ImportResult>(Outcome::kCancelled);
    if (!source.Remark().empty())
        result.remarks.push_back(source.Remark());
    ModelFormat const format = FormatOf(source, options);
    if (std::string const problem = ProblemOfReport(options.reportPath, modelPath, scenePath); !problem.empty())
        throw ModelError(problem);
    SceneTarget const target(source.Path(), scenePath, options.force);
    std::string const inside = target.Inside();
    ImportWork const work{source, format, inside, options};
    ChildResult child = ImportInChild(work, progress);
    if (child.signal != 0 && !child.IsOutOfTime() && format == ModelFormat::kStep && options.withAnnotations)
    {
        result.remarks.push_back(
            "the model was read without its annotations and views, since with them its reader ended " +
            child.EndText());
        options.withAnnotations = false;
        child = ImportInChild(work, progress);
    }
    if (child.isCancelled)
        return Ended<ImportResult>(Outcome::kCancelled);
    if (!child.answer)
        throw ModelError(child.failure.value_or("its reader ended " + child.EndText()));
    result.remarks.insert(result.remarks.end(), child.remarks.begin(), child.remarks.end());
    try
    {
        ReadAnswer(*child.answer, result);
    }
    catch (std::runtime_error const&)
    {
        throw ModelError("its reader tells nothing sensible of it");
    }
    result.hasAnnotations = options.withAnnotations;
    AddRemarks(result);
    if (!options.reportPath.empty())
        WriteImportReport(result, options.reportPath, modelPath, scenePath);
    target.Place();
    result.outcome = Outcome::kDone;
    return result;
}

ImportResult ImportOrFailure(std::string const& modelPath, std::string const& scenePath, ImportOptions const& options,
                             Progress const& progress)
{
    try
    {
        return Begin(progress, kStage_Reading) ? Import(modelPath, scenePath, options, progress)
                                               : Ended<ImportResult>(Outcome::kCancelled);
    }
    catch (ModelError const& error)
    {
        return Ended<ImportResult>(Outcome::kFailed, Escaped(modelPath) + ": " + Escaped(error.what()));
    }
    catch (TargetError const& error)
    {
        return Ended<ImportResult>(Outcome::kFailed, Escaped(error.what()));
    }
    catch (std::system_error const& error)
    {
        return Ended<ImportResult>(Outcome::kFailed, Escaped(scenePath) + ": the scene cannot be written: " +
                                                         std::generic_category().message(error.code().value()));
    }
}

}  // namespace

ImportResult ImportModel(std::string const& modelPath, std::string const& scenePath, ImportOptions const& options,
                         Progress const& progress)
{
    auto const work = [&](Progress const& heard)
    {
        Progress const planned =
            Planned(heard, {{kStage_Reading, 20}, {"transferring", 50}, {"meshing", 25}, {"writing", 5}});
        return ImportOrFailure(modelPath, scenePath, options, planned);
    };
    return Heard(progress, work);
}

}  // namespace KVR
