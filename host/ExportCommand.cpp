#include "host/ExportCommand.h"

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"
#include "host/ImportCommand.h"
#include "host/LongWork.h"
#include "host/UnitWords.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string ProblemOfTarget(std::string const& path)
{
    return IsExportFormat(path) ? std::string() : path + " has none of the extensions " + ExportFormats();
}

std::string ProblemOfPercentage(std::string const& text)
{
    return text.ends_with('%') ? ProblemOfDeflection(text) : "a percentage ends in %";
}

}  // namespace

ExportCommand::ExportCommand(CLI::App& program)
    : Command(program, "export", "Write a scene for other programs, by the target's extension: " + ExportFormats())
{
    AddSceneOptions(Arguments(), m_scene);
    Arguments().add_option("target", m_target, "The file to be")->required()->type_name("OUT")->check(&ProblemOfTarget);
    AddRepeatedOption(Arguments(), "--only", m_options.filter.only,
                      "Export this object with all below it, by its id or label, or a layer; * and ? stand for any "
                      "characters and one; may be repeated",
                      "NAME");
    AddRepeatedOption(Arguments(), "--hide", m_options.filter.hide, "Leave this out, named as above; may be repeated",
                      "NAME");
    Arguments()
        .add_option("--deflection", m_deflection,
                    "How far the triangles of a body without a mesh, and the lines of a curve, may be from it, as a "
                    "percentage of the diagonal of the box")
        ->type_name("PERCENT")
        ->check(&ProblemOfPercentage)
        ->capture_default_str();
    Arguments()
        .add_option("--unit", m_unit, "The unit of length of STL, OBJ and PLY; the scene's unless given")
        ->type_name("UNIT")
        ->check(CLI::IsMember(UnitWords()));
    Arguments().add_flag("--hidden-nodes", m_options.hiddenNodes,
                         "Write what is hidden to glTF, too, marked as hidden");
    Arguments()
        .add_flag("--compress", m_options.compress, "Compress the numbers of glTF (EXT_meshopt_compression)")
        ->check([](std::string const&) { return CanCompress() ? std::string() : "this build has no encoder for it"; });
    Arguments().add_flag(
        "--pcurves", m_options.parameterCurves,
        "Write to STEP the curves of edges in the parameters of plain surfaces, too, for readers that do not "
        "compute them");
    Arguments().add_flag("--mesh-faces", m_options.meshFaces,
                         "Write a mesh without a body to STEP as tessellated geometry, and to BREP as flat faces");
    AddInsecureOption(Arguments(), m_scene);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ExportCommand::Run()
{
    if (!m_unit.empty())
        m_options.unit = UnitOf(m_unit);
    m_options.deflection = DeflectionOf(m_deflection).value;
    ExportResult const result =
        Watched(false, [&](Progress const& progress) { return ExportScene(m_scene, m_target, m_options, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (!m_isQuiet)
        for (std::string const& remark : result.remarks)
            Complain(Escaped(m_target) + ": " + remark);
    return kExit_Good;
}

}  // namespace KVR
