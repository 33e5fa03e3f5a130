#include "host/ImportCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"
#include "host/LongWork.h"
#include "host/TextValues.h"
#include "output/Output.h"
#include "output/OutputError.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string Summary(ImportResult const& result)
{
    ImportCounts const& counts = result.counts;
    return Counted(counts.assemblies, "assembly", "assemblies") + ", " + Counted(counts.parts, "part", "parts") + ", " +
           Counted(counts.instances, "instance", "instances") + ", " + Counted(counts.bodies, "body", "bodies") + ", " +
           Counted(counts.triangles, "triangle", "triangles") + "; unit of length: " + WordOfLength(result.unit);
}

}  // namespace

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
    m_import.AddTo(Arguments());
    m_meshing.AddTo(Arguments());
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ImportCommand::Run()
{
    ImportOptions options = m_import.Options(m_meshing);
    options.timeout = m_timeout;
    ImportResult const result =
        Watched(!m_isQuiet, [&](Progress const& progress) { return ImportModel(m_model, m_scene, options, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (m_isQuiet)
        return kExit_Good;
    for (std::string const& remark : result.remarks)
        Complain(Escaped(m_model) + ": " + Escaped(remark));
    // The scene is there, whether or not somebody reads this.
    try
    {
        Output out(STDOUT_FILENO);
        out.Put(Escaped(m_scene) + ": " + Summary(result) + "\n");
        out.Flush();
    }
    catch (OutputError const& error)
    {
        if (!error.IsReaderGone())
            throw;
    }
    return kExit_Good;
}

}  // namespace KVR
