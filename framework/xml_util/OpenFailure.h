#pragma once

#include <cerrno>

namespace KVR
{

/// Whether a file that is there could not be opened for a reason that is not its own, by the errno of the attempt: the
/// disk fails, or the process has too many files open.
inline bool IsFailureOfSystem(int error) noexcept
{
    return error == EIO || error == EINTR || error == EMFILE || error == ENFILE;
}

}  // namespace KVR
