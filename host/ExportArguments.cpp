#include "host/ExportArguments.h"

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"

namespace KVR
{

void ExportArguments::AddTo(CLI::App& command)
{
    AddFilterOptions(command, m_options.filter, "Export");
    // A command that also imports has a unit of the model.
    m_unit.AddTo(command, command.get_option_no_throw("--unit") ? "--out-unit" : "--unit",
                 "The unit of length of STL, OBJ and PLY to be written; the scene's unless given");
    command.add_flag("--hidden-nodes", m_options.hiddenNodes, "Write what is hidden to glTF, too, marked as hidden");
    command.add_flag("--compress", m_options.compress, "Compress the numbers of glTF (EXT_meshopt_compression)")
        ->check([](std::string const&) { return CanCompress() ? std::string() : "this build has no encoder for it"; });
    command.add_flag("--pcurves", m_options.parameterCurves,
                     "Write to STEP the curves of edges in the parameters of plain surfaces, too, for readers that do "
                     "not compute them");
    command.add_flag("--mesh-faces", m_options.meshFaces,
                     "Write a mesh without a body to STEP as tessellated geometry, and to BREP as flat faces");
    // A command that also imports has one for both.
    if (!command.get_option_no_throw("--force"))
        command.add_flag("--force", m_options.force,
                         "Replace files beside the target that are of no earlier export to it");
}

ExportOptions ExportArguments::Options(MeshArguments const& meshing) const
{
    ExportOptions options = m_options;
    options.quality = meshing.Quality();
    if (m_unit.Unit() != kUnitType_Unknown)
        options.unit = m_unit.Unit();
    return options;
}

std::string ProblemOfTarget(std::string const& path)
{
    return IsExportFormat(path) ? std::string() : path + " has none of the extensions " + ExportFormats();
}

}  // namespace KVR
