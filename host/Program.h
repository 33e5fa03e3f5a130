#pragma once

#include "host/Commands.h"

namespace KVR
{

/// Takes the exit status of a command that has run; what the command holds, a scene with all its objects, is still
/// there.
using AtEnd = void (*)(int status);

/// Runs the program with these commands by its arguments; the answer is the exit status: 0 when the scene was read, 1
/// when it could not be or not be shown whole, 2 for arguments that make no sense. Nothing is thrown: this is where
/// what nobody else caught becomes a sentence. A signal by which the program is to end is noted, see EndBySignal.
/// What is to happen at the end of a command may end the process, which gives memory back faster than anybody frees it;
/// it is not called for one that failed by an exception.
int RunProgram(int argc, char const* const* argv, MakeCommands makeCommands, AtEnd atEnd = nullptr);

}  // namespace KVR
