#include "host/DiffCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneProblem.h"
#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "host/diff/ComparisonOutput.h"
#include "host/diff/ComparisonPage.h"
#include "inspect/Compare.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

SceneOptions WithPath(SceneOptions options, std::string const& path)
{
    options.path = path;
    return options;
}

// One of the scenes, with why it cannot be compared.
class ReadSide
{
public:
    ReadSide(SceneOptions const& options, std::string const& path) : m_file(WithPath(options, path))
    {
        SceneReading const reading = SceneReading::Of(m_file);
        for (std::string const& problem : reading.sideFileProblems)
            Complain(Escaped(path) + ": " + Escaped(problem));
        if (reading.failure)
            m_problem = SceneProblem(m_file.Options(), *reading.failure);
        else if (!reading.rootId)
            m_problem = Escaped(path) + ": the scene has no root file, so there is nothing to compare";
    }

    std::string const& Problem() const noexcept { return m_problem; }
    IProducer& Producer() { return m_file.Producer(); }

private:
    SceneFile m_file;
    std::string m_problem;
};

}  // namespace

DiffCommand::DiffCommand(CLI::App& program)
    : Command(
          program, "diff",
          "Tell in what two scenes differ: what was added, removed, moved, renamed, restyled, shown, hidden, meshed "
          "anew or changed in shape, properties, notes, units, views and layers. Ends with 0 when they serve the "
          "same, with 1 when they do not, and with 2 when that cannot be told")
{
    CLI::App& arguments = Arguments();
    arguments.add_option("first", m_first, "The scene as it was")->required()->type_name("A");
    arguments.add_option("second", m_second, "The scene as it is")->required()->type_name("B");
    arguments.add_flag("--all", m_all, "Show all changes of a kind, not ten");
    AddJsonOption(arguments, m_asJson);
    arguments
        .add_option("--html", m_page,
                    "Write a file that shows both scenes in a browser, what changed in colour, as kvr view shows one")
        ->type_name("FILE");
    AddReadingOptions(arguments, m_scene);
    AddInsecureOption(arguments, m_scene);
}

ExitStatus DiffCommand::Run()
{
    ReadSide first(m_scene, m_first);
    ReadSide second(m_scene, m_second);
    for (ReadSide const* const side : {&first, &second})
        if (!side->Problem().empty())
            Complain(side->Problem());
    if (!first.Problem().empty() || !second.Problem().empty())
        return kExit_NotCompared;
    SceneComparison const comparison = CompareScenes(first.Producer(), second.Producer());
    Output out(STDOUT_FILENO);
    if (m_asJson)
        WriteComparisonAsJson(comparison, m_first, m_second, out);
    else
        WriteComparisonAsText(comparison, m_first, m_second, m_all, out);
    out.Flush();
    if (!m_page.empty())
    {
        std::vector<std::string> remarks;
        std::string const problem = WriteComparisonPage(comparison, first.Producer(), WithPath(m_scene, m_first),
                                                        second.Producer(), m_second, m_page, remarks);
        if (!problem.empty())
            Complain(problem);
        for (std::string const& remark : remarks)
            Complain(Escaped(m_page) + ": " + remark);
        if (!problem.empty())
            return kExit_NotCompared;
    }
    return comparison.changes.empty() ? kExit_Good : kExit_Failed;
}

}  // namespace KVR
