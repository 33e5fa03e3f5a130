#pragma once

#include "host/Commands.h"

namespace KVR
{

/// Runs the program with these commands by its arguments; the answer is the exit status: 0 when the scene was read, 1
/// when it could not be or not be shown whole, 2 for arguments that make no sense. Nothing is thrown: this is where
/// what nobody else caught becomes a sentence. A signal by which the program is to end is noted, see EndBySignal.
int RunProgram(int argc, char const* const* argv, MakeCommands makeCommands);

}  // namespace KVR
