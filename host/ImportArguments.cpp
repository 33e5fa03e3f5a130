#include "host/ImportArguments.h"

#include <CLI/CLI.hpp>

namespace KVR
{

void ImportArguments::AddTo(CLI::App& command)
{
    m_unit.AddTo(command, "--unit", "The unit of length of a model that states none");
    command.add_flag("--no-mesh", m_withoutMeshes, "Write no meshes");
    command.add_flag("--no-brep", m_withoutBreps, "Write no bodies");
    command.add_flag("--no-pmi", m_withoutNotes, "Read no annotations and views");
    command.add_flag("--text", m_options.asText, "Write bodies as text");
}

ImportOptions ImportArguments::Options(MeshArguments const& meshing) const
{
    ImportOptions options = m_options;
    options.quality = meshing.Quality();
    options.withMeshes = !m_withoutMeshes;
    options.withBreps = !m_withoutBreps;
    options.withAnnotations = !m_withoutNotes;
    options.unit = m_unit.Unit();
    return options;
}

}  // namespace KVR
