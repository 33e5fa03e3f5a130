#include "host/SceneCommand.h"

#include <unistd.h>

#include "exchange/source/SceneProblem.h"
#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

SceneCommand::SceneCommand(CLI::App& program, std::string const& name, std::string const& description)
    : Command(program, name, description)
{
    AddSceneOptions(Arguments(), m_scene);
}

std::string SceneCommand::OfScene(std::string const& text) const
{
    return Escaped(m_scene.path) + ": " + text;
}

ExitStatus SceneCommand::Run()
{
    StoreNeeds needs = Needs();
    // The process ends when the scene has been shown.
    needs.returnsMemory = false;
    SceneFile& file = m_file.emplace(m_scene, needs);
    BeginReading();
    SceneReading const reading = SceneReading::Of(file);
    EndReading();
    for (std::string const& problem : reading.sideFileProblems)
        Complain(OfScene(Escaped(problem)));
    std::string complaint;
    if (!reading.failure || ShowsFailures())
    {
        Output out(STDOUT_FILENO);
        complaint = Show(file.Producer(), reading, out);
        out.Flush();
    }
    if (reading.failure)
        complaint = SceneProblem(m_scene, *reading.failure);
    if (complaint.empty())
        return kExit_Good;
    Complain(complaint);
    return kExit_Failed;
}

}  // namespace KVR
