#include "host/ImportArguments.h"

#include <CLI/CLI.hpp>

#include "host/NumberRange.h"

namespace KVR
{

namespace
{

constexpr NumberRange kCreases{0, 180};

}  // namespace

void ImportArguments::AddTo(CLI::App& command)
{
    m_unit.AddTo(command, "--unit", "The unit of length of a model that states none");
    command.add_option("--up", m_up, "Which axis of the model points up, for STL, OBJ, PLY and glTF: z, but of glTF y")
        ->type_name("AXIS")
        ->check(CLI::IsMember({"x", "y", "z"}));
    kCreases.Check(
        *command
             .add_option("--crease", m_options.creaseAngle,
                         "The greatest angle between triangles that share a normal, where a file of meshes has none")
             ->type_name("DEGREES")
             ->capture_default_str());
    command.add_flag("--lenient", m_options.isLenient,
                     "Take what is there of a STEP file or file of meshes that is cut short or damaged");
    command.add_flag("--no-mesh", m_withoutMeshes, "Write no meshes");
    command.add_flag("--no-brep", m_withoutBreps, "Write no bodies");
    command.add_flag("--no-pmi", m_withoutNotes, "Read no annotations and views");
    command.add_flag("--text", m_options.asText, "Write bodies as text");
    command
        .add_option("--report", m_options.reportPath, "List what the scene lacks of the model, item by item, as JSON")
        ->type_name("FILE");
    command.add_flag("--force", m_options.force, "Replace files in the way of side files that are of no earlier run");
}

ImportOptions ImportArguments::Options(MeshArguments const& meshing) const
{
    ImportOptions options = m_options;
    options.quality = meshing.Quality();
    options.withMeshes = !m_withoutMeshes;
    options.withBreps = !m_withoutBreps;
    options.withAnnotations = !m_withoutNotes;
    options.unit = m_unit.Unit();
    if (!m_up.empty())
        options.up = static_cast<UpAxis>(m_up.front() - 'x');
    return options;
}

}  // namespace KVR
