#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace KVR
{

/// Asks the system to back a large, new piece of memory with large pages: filling it then costs a fraction of the page
/// faults. A hint alone, and none where the system knows no such thing.
inline void AdviseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t kLargePage = 2 * 1024 * 1024;
    auto const begin = (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) & ~(kLargePage - 1);
    auto const end = (reinterpret_cast<std::uintptr_t>(memory) + size) & ~(kLargePage - 1);
    if (begin < end)
        static_cast<void>(::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
#endif
}

}  // namespace KVR
