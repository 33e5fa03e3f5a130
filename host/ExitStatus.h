#pragma once

namespace KVR
{

/// With what the program ends, unless a signal ends it.
enum ExitStatus
{
    kExit_Good = 0,
    kExit_Failed = 1,
    kExit_BadArguments = 2,
    /// Of diff alone, of which kExit_Failed is a difference: the scenes could not be compared.
    kExit_NotCompared = 2,
    /// Of check alone: an account whose sums do not agree, which is a mistake of this program.
    kExit_AccountsDisagree = 3
};

}  // namespace KVR
