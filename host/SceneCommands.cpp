#include <algorithm>
#include <iterator>

#include "host/CheckCommand.h"
#include "host/Commands.h"
#include "host/DumpCommand.h"
#include "host/ExplainCommand.h"
#include "host/HashCommand.h"
#include "host/InfoCommand.h"
#include "host/MakeCommands.h"
#include "host/NotesCommand.h"
#include "host/QueryCommand.h"
#include "host/StatsCommand.h"
#include "host/TreeCommand.h"
#include "host/ViewsCommand.h"

namespace KVR
{

Commands SceneCommands(CLI::App& program)
{
    return MakeAll<InfoCommand, DumpCommand, TreeCommand, QueryCommand, StatsCommand, ViewsCommand, NotesCommand,
                   CheckCommand, ExplainCommand, HashCommand>(program);
}

// Asked before anything of a command is made.
bool IsSceneCommand(std::string_view name)
{
    constexpr std::string_view kNames[] = {"info",  "dump",  "tree",  "query",   "stats",
                                           "views", "notes", "check", "explain", "hash"};
    return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

}  // namespace KVR
