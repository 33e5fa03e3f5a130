#pragma once

#include <string>

#include "exchange/source/SceneOptions.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// With what the program ends.
enum ExitStatus
{
    kExit_Good = 0,
    kExit_Failed = 1,
    kExit_BadArguments = 2,
    /// As shells give it to a program that was ended by SIGINT.
    kExit_Interrupted = 130
};

/// Says a sentence, given without its full stop, on standard error.
void Complain(std::string const& sentence);

/// The options that all commands have that read a scene.
void AddSceneOptions(CLI::App& command, SceneOptions& options);

}  // namespace KVR
