#include "framework/api/LargePages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace KVR
{

void AdviseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    std::size_t const skipped = (kLargePage - reinterpret_cast<std::uintptr_t>(memory) % kLargePage) % kLargePage;
    if (size < skipped + kLargePage)
        return;
    std::size_t const whole = (size - skipped) / kLargePage * kLargePage;
    static_cast<void>(::madvise(static_cast<char*>(memory) + skipped, whole, MADV_HUGEPAGE));
#endif
}

void PopulatePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#if defined(__linux__) && defined(MADV_POPULATE_WRITE)
    constexpr std::size_t kPage = 4096;
    std::size_t const skipped = (kPage - reinterpret_cast<std::uintptr_t>(memory) % kPage) % kPage;
    if (size >= skipped + kPage)
        static_cast<void>(
            ::madvise(static_cast<char*>(memory) + skipped, (size - skipped) / kPage * kPage, MADV_POPULATE_WRITE));
#endif
}

}  // namespace KVR
