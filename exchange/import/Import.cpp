#include "exchange/import/Import.h"
#include "framework/api/LengthUnits.h"

#include <unistd.h>
#include <Standard_Failure.hxx>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/ModelFormat.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/WorkFolder.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

// What a child answers is lines, each of a letter and a text.
constexpr char kLine_Done = 'D';
constexpr char kLine_Remark = 'R';
constexpr char kLine_Error = 'E';
constexpr char kLine_Deflection = 'M';

std::string Counted(std::size_t count, char const* one, char const* many)
{
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

// In words, as in "millimeters".
std::string UnitWord(UnitTypeEnum unit)
{
    std::string_view text = XMLStrUtil::UnitTypeToString(unit);
    text.remove_prefix(text.find('_') + 1);
    std::string word(text);
    word.front() = static_cast<char>(word.front() - 'A' + 'a');
    return word;
}

std::string Summary(ImportReport const& report, UnitTypeEnum unit)
{
    return Counted(report.assemblies, "assembly", "assemblies") + ", " + Counted(report.parts, "part", "parts") + ", " +
           Counted(report.instances, "instance", "instances") + ", " + Counted(report.bodies, "body", "bodies") + ", " +
           Counted(report.triangles, "triangle", "triangles") + "; unit of length: " + UnitWord(unit);
}

std::string OneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string Error(std::string const& cause)
{
    return kLine_Error + OneLine(cause);
}

// What the child does. Its answer begins with how it went.
std::string ImportHere(ImportOptions const& options, ModelFormat format, std::string const& scenePath,
                       bool withAnnotations)
{
    try
    {
        ModelReadOptions reading;
        reading.withAnnotations = withAnnotations;
        reading.unit = options.unit;
        reading.showsProgress = !options.isQuiet && isatty(STDERR_FILENO) == 1;
        ModelDocument const model = ModelDocument::Read(options.modelPath, format, reading);
        ImportReport const report = WriteSceneOf(model, options.modelPath, scenePath, options.scene);
        std::string answer = kLine_Done + Summary(report, model.unit);
        answer +=
            '\n' + std::string(1, kLine_Deflection) + std::to_string(report.deflection * MetresOf(model.unit) * 1e3);
        for (std::string const& warning : model.warnings)
            answer += '\n' + std::string(1, kLine_Remark) + OneLine(warning);
        if (!model.isUnitStated)
            answer += '\n' + std::string(1, kLine_Remark) +
                      "the model states no unit of length; its numbers are taken for " + UnitWord(model.unit) +
                      " lengths";
        for (auto const& [kind, count] : report.losses.Counts())
            answer += '\n' + std::string(1, kLine_Remark) + "not in the scene: " + std::to_string(count) + ' ' + kind;
        return answer;
    }
    catch (ModelError const& error)
    {
        return Error(error.what());
    }
    catch (FileException const&)
    {
        int const errorNumber = errno;
        return Error("its scene cannot be written: " + std::generic_category().message(errorNumber));
    }
    catch (std::bad_alloc const&)
    {
        return Error("there is not enough memory for it");
    }
    catch (std::exception const& error)
    {
        return Error(error.what());
    }
    catch (Standard_Failure const& failure)
    {
        char const* const message = failure.GetMessageString();
        return Error(std::string("Open CASCADE failed: ") + (message && *message ? message : "no cause given"));
    }
}

void ReadAnswer(std::string const& answer, ImportResult& result)
{
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.empty())
            continue;
        std::string text = line.substr(1);
        if (line.front() == kLine_Deflection)
            result.deflectionInMillimetres = std::stod(text);
        else if (line.front() == kLine_Remark)
            result.remarks.push_back(std::move(text));
        else
        {
            result.isGood = line.front() == kLine_Done;
            result.sentence = std::move(text);
        }
    }
}

ImportResult Import(ImportOptions const& options)
{
    ImportResult result;
    result.hasAnnotations = options.withAnnotations;
    std::optional<ModelFormat> const format = FormatOfModel(options.modelPath);
    if (!format)
        throw ModelError("it is in none of the formats STEP, IGES, BREP, glTF, STL, OBJ and PLY");
    InterruptionScope const signals;
    WorkFolder const folder(options.scenePath);
    std::string const inside = folder.Inside().string();
    ChildResult child = RunInChild([&] { return ImportHere(options, *format, inside, options.withAnnotations); });
    if (child.signal != 0 && !child.isInterrupted && *format == ModelFormat::kStep && options.withAnnotations)
    {
        result.remarks.push_back(
            "the model was read without its annotations and views, since with them its reader ended (" +
            SignalText(child.signal) + ")");
        result.hasAnnotations = false;
        child = RunInChild([&] { return ImportHere(options, *format, inside, false); });
    }
    if (child.isInterrupted)
    {
        result.isInterrupted = true;
        result.sentence = "interrupted; nothing was written";
        return result;
    }
    if (!child.answer)
        throw ModelError(child.signal != 0 ? "its reader ended (" + SignalText(child.signal) + ")"
                                           : std::string("its reader ended early"));
    ReadAnswer(*child.answer, result);
    if (!result.isGood)
        return result;
    // Properties of an earlier scene of this name would count as this one's.
    fs::path const properties = fs::path(folder.Target()).replace_extension(".kvrproperty");
    bool const hasProperties = folder.Holds(properties.filename());
    folder.MoveIntoPlace();
    if (!hasProperties)
        fs::remove(properties);
    return result;
}

}  // namespace

ImportResult ImportModel(ImportOptions const& options)
{
    ImportResult result;
    try
    {
        result = Import(options);
        if (result.isGood)
            result.sentence = Escaped(options.scenePath) + ": " + result.sentence;
        else
            result.sentence = Escaped(options.modelPath) + ": " + Escaped(result.sentence);
    }
    catch (ModelError const& error)
    {
        result.isGood = false;
        result.sentence = Escaped(options.modelPath) + ": " + Escaped(error.what());
    }
    catch (std::system_error const& error)
    {
        result.isGood = false;
        result.sentence = Escaped(options.scenePath) +
                          ": the scene cannot be written: " + std::generic_category().message(error.code().value());
    }
    return result;
}

Deflection DeflectionOf(std::string const& text)
{
    Deflection deflection;
    deflection.isFraction = text.ends_with('%');
    std::size_t const length = text.size() - (deflection.isFraction ? 1 : 0);
    auto const [end, error] = std::from_chars(text.data(), text.data() + length, deflection.value);
    if (error != std::errc() || end != text.data() + length || !(deflection.value > 0.0) ||
        !std::isfinite(deflection.value))
        throw std::invalid_argument("a deflection is a length above 0, or a percentage of the diagonal such as 0.1%");
    if (deflection.isFraction)
        deflection.value /= 100.0;
    return deflection;
}

}  // namespace KVR
