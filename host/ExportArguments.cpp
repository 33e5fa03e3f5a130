#include "host/ExportArguments.h"

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"

namespace KVR
{

void ExportArguments::AddTo(CLI::App& command)
{
    AddRepeatedOption(command, "--only", m_options.filter.only,
                      "Export this object with all below it, by its id or label, or a layer; * and ? stand for any "
                      "characters and one; may be repeated",
                      "NAME");
    AddRepeatedOption(command, "--hide", m_options.filter.hide, "Leave this out, named as above; may be repeated",
                      "NAME");
    command.add_flag("--mesh-faces", m_options.meshFaces,
                     "Write a mesh without a body to STEP and BREP as a shell of flat faces");
}

ExportOptions ExportArguments::Options(MeshArguments const& meshing) const
{
    ExportOptions options = m_options;
    options.quality = meshing.Quality();
    return options;
}

std::string ProblemOfTarget(std::string const& path)
{
    return IsExportFormat(path) ? std::string() : path + " has none of the extensions " + ExportFormats();
}

}  // namespace KVR
