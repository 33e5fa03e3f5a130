#include "host/Program.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "host/CertifyCommand.h"
#include "host/Command.h"
#include "host/DumpCommand.h"
#include "host/ExportCommand.h"
#include "host/ImportCommand.h"
#include "host/NotesCommand.h"
#include "host/TreeCommand.h"
#include "host/ViewsCommand.h"
#include "output/OutputError.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr char kSeeHelp[] = "; see kvr --help";

using Commands = std::vector<std::unique_ptr<Command>>;

template <class... Classes>
Commands MakeCommands(CLI::App& program)
{
    Commands commands;
    (commands.push_back(std::make_unique<Classes>(program)), ...);
    return commands;
}

// All commands, in the order of the help.
Commands AllCommands(CLI::App& program)
{
    return MakeCommands<DumpCommand, TreeCommand, ViewsCommand, NotesCommand, ImportCommand, ExportCommand,
                        CertifyCommand>(program);
}

void Describe(CLI::App& program)
{
    program.set_version_flag("--version", "kvr " KVR_VERSION);
    program.require_subcommand(1);
    program.footer(
        "Examples:\n"
        "  kvr import examples/models/as1-oc-214.stp as1.xml\n"
        "  kvr tree --styles as1.xml\n"
        "  kvr dump --summary as1.xml\n"
        "  kvr views as1.xml\n"
        "  kvr notes as1.xml\n"
        "  kvr export as1.xml as1.glb\n"
        "  kvr export --only l-bracket as1.xml bracket.step\n"
        "  kvr certify examples/models/as1-oc-214.stp");
    program.failure_message([](CLI::App const*, CLI::Error const& error)
                            { return std::string("kvr: ") + error.what() + kSeeHelp + '\n'; });
}

ExitStatus Run(Command& command)
{
    try
    {
        return command.Run();
    }
    catch (ArgumentError const& error)
    {
        Complain(Escaped(error.what()) + kSeeHelp);
        return kExit_BadArguments;
    }
    catch (OutputError const& error)
    {
        if (error.IsReaderGone())
            return kExit_Good;
        Complain(std::string("standard output: ") + error.what());
    }
    catch (std::exception const& error)
    {
        Complain(Escaped(error.what()));
    }
    return kExit_Failed;
}

}  // namespace

int RunProgram(int argc, char const* const* argv)
{
    CLI::App program("Shows what a CAD scene serves, makes scenes of models, and writes scenes for other programs.",
                     "kvr");
    Describe(program);
    Commands const commands = AllCommands(program);
    try
    {
        program.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        return program.exit(error) == 0 ? kExit_Good : kExit_BadArguments;
    }
    for (std::unique_ptr<Command> const& command : commands)
        if (command->IsChosen())
            return Run(*command);
    return kExit_BadArguments;
}

}  // namespace KVR
