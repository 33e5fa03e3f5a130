#pragma once

#include "framework/kernel/Export.h"

class Standard_Failure;

namespace KVR
{

/// Whether memory ran out on this thread since the watch began. Open CASCADE takes an allocation that failed for damage
/// of what it reads, or goes on without what it could not make; what it throws then tells nothing any more. The C
/// library notes each such allocation in errno, which the watch clears when it begins. A watch thus sees the last thing
/// that failed: it is for calls that do nothing else which sets errno.
class KVR_KERNEL_API MemoryWatch
{
public:
    MemoryWatch() noexcept;
    ~MemoryWatch() = default;
    MemoryWatch(MemoryWatch const&) = delete;
    MemoryWatch& operator=(MemoryWatch const&) = delete;

    /// Throws std::bad_alloc when memory ran out.
    void Check() const;
    /// The same, also when that is what a failure says.
    void Check(Standard_Failure const& failure) const;
};

}  // namespace KVR
