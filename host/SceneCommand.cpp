#include "host/SceneCommand.h"

#include <unistd.h>

#include "exchange/source/SceneFile.h"
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
    // The process ends with the command, and takes what a scene holds with it in one piece.
    static SceneFile* s_file = nullptr;
    s_file = new SceneFile(m_scene, Needs());
    SceneFile& file = *s_file;
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
