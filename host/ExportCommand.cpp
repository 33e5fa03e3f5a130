#include "host/ExportCommand.h"

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"
#include "host/LongWork.h"
#include "output/SafeText.h"

namespace KVR
{

ExportCommand::ExportCommand(CLI::App& program)
    : Command(program, "export", "Write a scene for other programs, by the target's extension: " + ExportFormats())
{
    AddSceneOptions(Arguments(), m_scene);
    Arguments().add_option("target", m_target, "The file to be")->required()->type_name("OUT")->check(&ProblemOfTarget);
    m_export.AddTo(Arguments());
    m_meshing.AddTo(Arguments());
    AddInsecureOption(Arguments(), m_scene);
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus ExportCommand::Run()
{
    ExportOptions options = m_export.Options(m_meshing);
    options.timeout = m_timeout;
    ExportResult const result = Watched(
        !m_isQuiet, [&](Progress const& progress) { return ExportScene(m_scene, m_target, options, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (!m_isQuiet)
        for (std::string const& remark : result.remarks)
            Complain(Escaped(m_target) + ": " + remark);
    return kExit_Good;
}

}  // namespace KVR
