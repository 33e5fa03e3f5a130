#pragma once

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

}  // namespace KVR
