#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace KVR
{

inline constexpr std::size_t kLargePage = 2 * 1024 * 1024;

/// Asks the system to back a large, new piece of memory with large pages: filling it then costs a fraction of the page
/// faults. A hint alone, and none where the system knows no such thing.
inline void AdviseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    std::size_t const skipped = (kLargePage - reinterpret_cast<std::uintptr_t>(memory) % kLargePage) % kLargePage;
    if (size < skipped + kLargePage)
        return;
    std::size_t const whole = (size - skipped) / kLargePage * kLargePage;
    static_cast<void>(::madvise(static_cast<char*>(memory) + skipped, whole, MADV_HUGEPAGE));
#endif
}

}  // namespace KVR
