#pragma once

namespace KVR
{

/// With what the program ends, unless a signal ends it.
enum ExitStatus
{
    kExit_Good = 0,
    kExit_Failed = 1,
    kExit_BadArguments = 2
};

}  // namespace KVR
