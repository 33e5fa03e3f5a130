#include "exchange/run/OutOfMemory.h"

#include <unistd.h>

#include <Standard_OutOfMemory.hxx>
#include <atomic>
#include <new>

namespace
{

// Negative for a process that goes on.
constinit std::atomic<int> g_status{-1};

void EndIfWanted() noexcept
{
    if (int const status = g_status.load(std::memory_order_relaxed); status >= 0)
        _exit(status);
}

}  // namespace

namespace KVR
{

void EndWhereMemoryRunsOut(int status) noexcept
{
    g_status = status;
    std::set_new_handler(&EndIfWanted);
}

}  // namespace KVR

// Open CASCADE asks the C library for memory, not C++, and has nothing to be told by of an allocation that failed, but
// for the exception that it makes then. The dynamic linker finds this constructor of it before Open CASCADE's own,
// which does the same but for the first line; where another library comes before this one, that is lost.
__attribute__((visibility("default"))) Standard_OutOfMemory::Standard_OutOfMemory(Standard_CString text)
{
    EndIfWanted();
    Standard_OutOfMemory::SetMessageString(text);
}
