#include "host/Program.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <Standard_Failure.hxx>
#include <algorithm>
#include <csignal>
#include <exception>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "framework/kernel/KernelMessages.h"
#include "host/Commands.h"
#include "host/QueryArguments.h"
#include "host/Signals.h"
#include "host/StandardStreams.h"
#include "output/Output.h"
#include "output/OutputError.h"
#include "output/SafeText.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

constexpr char kSeeHelp[] = "; see kvr --help";

void Describe(CLI::App& program)
{
    program.set_version_flag("--version", "kvr " KVR_VERSION);
    program.require_subcommand(1);
    program.footer(
        "Examples:\n"
        "  kvr import examples/models/as1-oc-214.stp as1.xml\n"
        "  kvr tree --styles as1.xml\n"
        "  kvr info as1.xml\n"
        "  kvr explain as1.xml part1\n"
        "  kvr dump --summary as1.xml\n"
        "  kvr query as1.xml 'part[name~\"*nut*\"]'\n"
        "  kvr stats as1.xml\n"
        "  kvr views as1.xml\n"
        "  kvr notes as1.xml\n"
        "  kvr export as1.xml as1.glb\n"
        "  kvr export --only l-bracket as1.xml bracket.step\n"
        "  kvr convert examples/models/as1-oc-214.stp as1.glb\n"
        "  kvr view examples/models/as1-oc-214.stp as1.html\n"
        "  kvr picture examples/models/as1-oc-214.stp as1.png\n"
        "  kvr certify examples/models/as1-oc-214.stp\n"
        "  kvr check as1.xml\n"
        "  kvr diff as1.xml as2.xml\n"
        "  kvr hash as1.xml");
}

std::string Meant(std::string const& text, std::vector<std::string> const& names)
{
    constexpr std::size_t kLongestName = 32;
    NearestNames nearest(text, 1, std::max<std::size_t>(1, 2 * std::min(text.size(), kLongestName) / 5));
    for (std::string const& name : names)
        nearest.Add(name);
    return nearest.Names().empty() ? std::string() : "; did you mean " + nearest.Names().front() + "?";
}

std::string UnknownOption(CLI::App const& command, std::string const& text)
{
    std::string const option = text.substr(0, text.find('='));
    std::vector<std::string> names;
    for (CLI::Option const* const known : command.get_options())
        for (std::string const& name : known->get_lnames())
            names.push_back("--" + name);
    return command.get_name() + " has no option " + option + Meant(option, names);
}

std::string UnknownCommand(CLI::App const& program, std::string const& text)
{
    std::vector<std::string> names;
    for (CLI::App const* const command : program.get_subcommands([](CLI::App const*) { return true; }))
        names.push_back(command->get_name());
    return "there is no command " + text + Meant(text, names);
}

// What is wrong with arguments that could not be parsed. A name that there is not explains all else that is wrong.
std::string ProblemOf(CLI::App const& program, CLI::ParseError const& error)
{
    std::vector<CLI::App*> const chosen = program.get_subcommands();
    CLI::App const& command = chosen.empty() ? program : *chosen.front();
    for (CLI::App const* const app : {&command, &program})
        for (std::string const& text : app->remaining())
            if (text.starts_with('-') && text.size() > 1)
                return UnknownOption(*app, text);
    if (chosen.empty() && !program.remaining().empty())
        return UnknownCommand(program, program.remaining().front());
    return error.what();
}

ExitStatus Answer(CLI::App const& program, CLI::ParseError const& error)
{
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success))
        throw ArgumentError(ProblemOf(program, error));
    std::ostringstream text;
    program.exit(error, text, text);
    Output out(STDOUT_FILENO);
    out.Put(text.str());
    out.Flush();
    return kExit_Good;
}

// Tells with what the program ends when this throws.
ExitStatus ParseAndRun(int argc, char const* const* argv, MakeCommands makeCommands, AtEnd atEnd, ExitStatus& failed)
{
    CLI::App program("Shows what a CAD scene serves, makes scenes of models, and writes scenes for other programs.",
                     "kvr");
    Describe(program);
    Commands const commands = makeCommands(program);
    try
    {
        program.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        return Answer(program, error);
    }
    for (std::unique_ptr<Command> const& command : commands)
        if (command->IsChosen())
        {
            failed = command->FailureStatus();
            ExitStatus const status = command->Run();
            if (atEnd)
                atEnd(status);
            return status;
        }
    return kExit_BadArguments;
}

}  // namespace

int RunProgram(int argc, char const* const* argv, MakeCommands makeCommands, AtEnd atEnd)
{
    ExitStatus failed = kExit_Failed;
    try
    {
        return ParseAndRun(argc, argv, makeCommands, atEnd, failed);
    }
    catch (ExpressionError const& error)
    {
        Complain(error.what() + (error.Lines().empty() ? "" : "\n" + error.Lines()));
        return kExit_BadArguments;
    }
    catch (ArgumentError const& error)
    {
        Complain(Escaped(error.what()) + kSeeHelp);
        return kExit_BadArguments;
    }
    catch (OutputError const& error)
    {
        if (error.IsReaderGone() && IsEndedByPipe())
        {
            NoteSignal(SIGPIPE);
            return failed;
        }
        Complain(std::string("standard output: ") + error.what());
    }
    catch (std::bad_alloc const&)
    {
        Complain("there is not enough memory for it");
    }
    catch (std::exception const& error)
    {
        Complain(Escaped(error.what()));
    }
    catch (Standard_Failure const& error)
    {
        Complain("Open CASCADE failed: " + KernelFailureText(error));
    }
    return failed;
}

}  // namespace KVR
