#include "host/ExplainCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "exchange/source/Failure.h"
#include "exchange/source/MemoryLimit.h"
#include "exchange/source/SceneProblem.h"
#include "host/CommonOptions.h"
#include "host/NumberRange.h"
#include "host/explain/ExplanationOutput.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr NumberRange kMost{0, 1e9, true};

// "; did you mean a, b or c?"
std::string Meant(std::vector<std::string> const& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "; did you mean " : i + 1 < names.size() ? ", " : " or ") + Escaped(names[i]);
    return text.empty() ? text : text + "?";
}

}  // namespace

ExplainCommand::ExplainCommand(CLI::App& program)
    : Command(program, "explain",
              "Tell of one object where it comes from, what each of its answers follows and how that was understood, "
              "who refers to it, where it occurs, and why it looks as it does there")
{
    CLI::App& arguments = Arguments();
    arguments.add_option("scene", m_scene.path, "The scene file")->required()->type_name("SCENE");
    arguments.add_option("object", m_name, "Its id, or an occurrence as ids with / between them")
        ->required()
        ->type_name("ID");
    AddJsonOption(arguments, m_asJson);
    kMost.Check(*arguments.add_option("--most", m_options.most, "List so many occurrences and references")
                     ->type_name("N")
                     ->capture_default_str());
    AddTrustOption(arguments, m_scene);
    AddInsecureOption(arguments, m_scene);
    AddMemoryOption(arguments, m_scene);
}

ExitStatus ExplainCommand::Run()
{
    if (std::string const problem = MemoryProblem(m_scene); !problem.empty())
    {
        Complain("\"" + Escaped(m_scene.path) + "\" cannot be read: " + problem);
        return kExit_Failed;
    }
    m_options.allowDtd = m_scene.allowDtd;
    m_options.insecure = m_scene.insecure;
    Explanation const explanation = ExplainObject(m_scene.path, m_name, m_options);
    if (!explanation.isParsed)
    {
        Failure failure;
        failure.fileName = m_scene.path;
        Complain(SceneProblem(m_scene, failure));
        return kExit_Failed;
    }
    if (!explanation.problem.empty())
    {
        Complain(Escaped(m_scene.path) + ": " + Escaped(explanation.problem) + Meant(explanation.nearest));
        return kExit_Failed;
    }
    Output out(STDOUT_FILENO);
    if (m_asJson)
        WriteExplanationAsJson(explanation, out);
    else
        WriteExplanationAsText(explanation, out);
    out.Flush();
    return kExit_Good;
}

}  // namespace KVR
