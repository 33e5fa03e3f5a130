#include "framework/kernel/MemoryWatch.h"

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <cerrno>
#include <cstring>
#include <new>

namespace KVR
{

MemoryWatch::MemoryWatch() noexcept
{
    errno = 0;
}

void MemoryWatch::Check() const
{
    if (errno == ENOMEM)
        throw std::bad_alloc();
}

void MemoryWatch::Check(Standard_Failure const& failure) const
{
    // A failure that Open CASCADE makes of another one has the name of that in its text.
    char const* const text = failure.GetMessageString();
    // To ask for its kind by the means of Open CASCADE would take memory.
    if (dynamic_cast<Standard_OutOfMemory const*>(&failure) || (text && std::strstr(text, "Standard_OutOfMemory")))
        throw std::bad_alloc();
    Check();
}

}  // namespace KVR
