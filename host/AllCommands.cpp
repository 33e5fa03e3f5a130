#include "host/CertifyCommand.h"
#include "host/CheckCommand.h"
#include "host/Commands.h"
#include "host/ConvertCommand.h"
#include "host/DiffCommand.h"
#include "host/DumpCommand.h"
#include "host/ExplainCommand.h"
#include "host/ExportCommand.h"
#include "host/HashCommand.h"
#include "host/ImportCommand.h"
#include "host/InfoCommand.h"
#include "host/MakeCommands.h"
#include "host/NotesCommand.h"
#include "host/PictureCommand.h"
#include "host/QueryCommand.h"
#include "host/StatsCommand.h"
#include "host/TreeCommand.h"
#include "host/ViewCommand.h"
#include "host/ViewsCommand.h"

namespace KVR
{

Commands AllCommands(CLI::App& program)
{
    return MakeAll<InfoCommand, DumpCommand, TreeCommand, QueryCommand, StatsCommand, ViewsCommand, NotesCommand,
                   ImportCommand, ExportCommand, ConvertCommand, ViewCommand, PictureCommand, CertifyCommand,
                   CheckCommand, ExplainCommand, DiffCommand, HashCommand>(program);
}

}  // namespace KVR
