#pragma once

namespace KVR
{

/// From here on this process ends at once, with that status, where an allocation fails that C++ or Open CASCADE asks
/// for, in whichever thread: for child processes alone. Open CASCADE takes such failures for damage of what it works
/// on, or goes on without what it could not make; nobody would know.
void EndWhereMemoryRunsOut(int status) noexcept;

}  // namespace KVR
