#include "host/ImportCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "host/LongWork.h"
#include "host/UnitWords.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string Counted(std::size_t count, char const* one, char const* many)
{
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

std::string Summary(ImportResult const& result)
{
    ImportCounts const& counts = result.counts;
    return Counted(counts.assemblies, "assembly", "assemblies") + ", " + Counted(counts.parts, "part", "parts") + ", " +
           Counted(counts.instances, "instance", "instances") + ", " + Counted(counts.bodies, "body", "bodies") + ", " +
           Counted(counts.triangles, "triangle", "triangles") +
           "; unit of length: " + UnitWords().at(static_cast<std::size_t>(result.unit - kUnitType_Micrometer));
}

}  // namespace

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

std::string ProblemOfDeflection(std::string const& text)
{
    try
    {
        DeflectionOf(text);
        return {};
    }
    catch (std::invalid_argument const& error)
    {
        return error.what();
    }
}

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import",
              "Make a scene of a model: STEP, IGES, BREP, glTF, STL, OBJ or PLY, told apart by content and name")
{
    Arguments()
        .add_option("model", m_model, "The model's file; \"-\" is standard input")
        ->required()
        ->type_name("MODEL");
    Arguments()
        .add_option("scene", m_scene, "The scene to be; its side files stand beside it")
        ->required()
        ->type_name("SCENE.xml");
    Arguments()
        .add_option("--deflection", m_deflection,
                    "How far meshes may be from bodies: a length in the model's unit, or a percentage of the diagonal "
                    "of the model's box")
        ->type_name("LENGTH")
        ->check(&ProblemOfDeflection)
        ->capture_default_str();
    Arguments()
        .add_option("--unit", m_unit, "The unit of length of a model that states none")
        ->type_name("UNIT")
        ->check(CLI::IsMember(UnitWords()))
        ->capture_default_str();
    Arguments()
        .add_option("--up", m_up, "Which axis of the model points up, for STL, OBJ, PLY and glTF: z, but of glTF y")
        ->type_name("AXIS")
        ->check(CLI::IsMember({"x", "y", "z"}));
    Arguments()
        .add_option("--crease", m_options.creaseAngle,
                    "The greatest angle between triangles that share a normal, where a file of meshes has none")
        ->type_name("DEGREES")
        ->check(CLI::Range(0.0, 180.0))
        ->capture_default_str();
    Arguments().add_flag("--lenient", m_options.isLenient,
                         "Take what is there of a file of meshes that is cut short or damaged");
    Arguments().add_flag("--no-mesh", m_withoutMeshes, "Write no meshes");
    Arguments().add_flag("--no-brep", m_withoutBreps, "Write no bodies");
    Arguments().add_flag("--no-pmi", m_withoutNotes, "Read no annotations and views");
    Arguments().add_flag("--text", m_options.asText, "Write bodies as text");
    Arguments().add_flag("--force", m_options.force, "Replace files that are no side files of a scene at SCENE.xml");
    Arguments()
        .add_option("--report", m_options.reportPath, "List what the scene lacks of the model, item by item, as JSON")
        ->type_name("FILE");
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ImportCommand::Run()
{
    m_options.deflection = DeflectionOf(m_deflection);
    m_options.withMeshes = !m_withoutMeshes;
    m_options.withBreps = !m_withoutBreps;
    m_options.withAnnotations = !m_withoutNotes;
    m_options.unit = UnitOf(m_unit);
    if (!m_up.empty())
        m_options.up = static_cast<UpAxis>(m_up.front() - 'x');
    ImportResult const result = Watched(
        !m_isQuiet, [&](Progress const& progress) { return ImportModel(m_model, m_scene, m_options, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (m_isQuiet)
        return kExit_Good;
    for (std::string const& remark : result.remarks)
        Complain(Escaped(m_model) + ": " + Escaped(remark));
    Output out(STDOUT_FILENO);
    out.Put(Escaped(m_scene) + ": " + Summary(result) + "\n");
    out.Flush();
    return kExit_Good;
}

}  // namespace KVR
