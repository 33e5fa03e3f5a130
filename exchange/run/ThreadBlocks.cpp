#include "exchange/run/ThreadBlocks.h"

#include <dlfcn.h>

#include <Standard.hxx>
#include <Standard_OutOfMemory.hxx>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace
{

constinit std::atomic<int> g_uses{0};

// What the C library's caches hold ends here; a longer block of zeros may come from fresh pages, which are such.
constexpr Standard_Size kLargest = 1024;

bool HasOwnManager() noexcept
{
    char const* const manager = std::getenv("MMGT_OPT");
    return manager && std::string_view(manager) != "0";
}

// Open CASCADE's own, behind this one.
Standard_Address AllocateAsEver(Standard_Size size)
{
    using Function = Standard_Address (*)(Standard_Size);
    static auto const own = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "_ZN8Standard8AllocateEm"));
    return own(size);
}

}  // namespace

namespace KVR
{

ThreadBlocks::ThreadBlocks() noexcept : m_uses(HasOwnManager() ? 0 : 1)
{
    g_uses += m_uses;
}

ThreadBlocks::~ThreadBlocks()
{
    g_uses -= m_uses;
}

bool ThreadBlocks::IsInUse() noexcept
{
    return g_uses.load(std::memory_order_relaxed) > 0;
}

}  // namespace KVR

// The dynamic linker finds this one before Open CASCADE's own.
__attribute__((visibility("default"))) Standard_Address Standard::Allocate(Standard_Size const size)
{
    if (size > kLargest || !KVR::ThreadBlocks::IsInUse())
        return AllocateAsEver(size);
    // Strings of Open CASCADE write whole words.
    Standard_Size const whole = (size + 7U) & ~Standard_Size{7};
    void* block = std::malloc(whole);
    // Else compilers make one call of both, which is the one that is to be avoided.
    asm volatile("" : "+r"(block));
    // It knows how to fail.
    return block ? std::memset(block, 0, whole) : AllocateAsEver(size);
}
