#include "host/ConvertCommand.h"

#include <CLI/CLI.hpp>

#include "exchange/ConvertModel.h"
#include "host/CommonOptions.h"
#include "host/Conclude.h"
#include "host/LongWork.h"

namespace KVR
{

ConvertCommand::ConvertCommand(CLI::App& program)
    : Command(program, "convert",
              "Make a file for other programs of a model, or of a scene (.xml): an import and an export in one, by the "
              "target's extension: " +
                  ExportFormats())
{
    Arguments().add_option("source", m_source, "The model's file, or a scene")->required()->type_name("IN");
    Arguments().add_option("target", m_target, "The file to be")->required()->type_name("OUT")->check(&ProblemOfTarget);
    Arguments().add_option("--scene", m_scenePath, "Keep the scene, in this file")->type_name("SCENE.xml");
    m_import.AddTo(Arguments());
    m_export.AddTo(Arguments());
    m_meshing.AddTo(Arguments());
    AddReadingOptions(Arguments(), m_scene);
    AddInsecureOption(Arguments(), m_scene);
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ConvertCommand::Run()
{
    if (m_scenePath && IsScenePath(m_source))
        throw ArgumentError("--scene is for a model, and " + m_source + " is a scene already");
    ConvertOptions options;
    options.import = m_import.Options(m_meshing);
    options.exportation = m_export.Options(m_meshing);
    options.exportation.force = options.import.force;
    options.import.timeout = options.exportation.timeout = m_timeout;
    options.scene = m_scene;
    options.scenePath = m_scenePath;
    ConvertResult const result = Watched(
        !m_isQuiet, [&](Progress const& progress) { return ConvertModel(m_source, m_target, options, progress); });
    return Conclude(result, m_source, m_target, m_isQuiet);
}

}  // namespace KVR
