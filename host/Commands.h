#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/Command.h"

namespace CLI
{
class App;
}

namespace KVR
{

using Commands = std::vector<std::unique_ptr<Command>>;

/// Makes commands of the program.
using MakeCommands = Commands (*)(CLI::App& program);

/// All of them, in the order of the help. They load the library of exchange, and with it the part of Open CASCADE that
/// reads and writes models, which takes longer than most scenes.
Commands AllCommands(CLI::App& program);

/// Those that do without it.
Commands SceneCommands(CLI::App& program);

/// Whether the command of that name is among SceneCommands.
bool IsSceneCommand(std::string_view name);

}  // namespace KVR
