#include "host/InfoCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <system_error>

#include "host/CommonOptions.h"
#include "host/info/Info.h"
#include "inspect/estimate/SceneCensus.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string ProblemOf(SceneCensus const& census)
{
    switch (census.problem)
    {
        case DocumentCensus::Problem::kNone:
            break;
        case DocumentCensus::Problem::kUnreadable:
            return census.systemError != 0 ? std::generic_category().message(census.systemError)
                                           : "it is no regular file";
        case DocumentCensus::Problem::kEncoding:
            return "its encoding is none that can be counted without reading it: neither UTF-16 nor one in which ASCII "
                   "stands as itself";
        case DocumentCensus::Problem::kMalformed:
            return census.documentBytes == 0 ? "it is empty" : "it is not a well-formed XML document";
    }
    return {};
}

}  // namespace

InfoCommand::InfoCommand(CLI::App& program)
    : Command(program, "info",
              "Show what a scene consists of, and about how much memory and time reading it takes, without reading it: "
              "from one pass over the document and the heads of the stores")
{
    Arguments().add_option("scene", m_path, "The scene file")->required()->type_name("SCENE");
    AddJsonOption(Arguments(), m_asJson);
}

ExitStatus InfoCommand::Run()
{
    SceneCensus const census = SceneCensus::Of(m_path);
    if (std::string const problem = ProblemOf(census); !problem.empty())
    {
        Complain("\"" + Escaped(m_path) + "\" cannot be counted: " + problem);
        return kExit_Failed;
    }
    Output out(STDOUT_FILENO);
    if (m_asJson)
        WriteInfoAsJson(census, out);
    else
        WriteInfoAsText(census, out);
    out.Flush();
    return kExit_Good;
}

}  // namespace KVR
