#include "tests/framework/xml_util/AllocationMeter.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace
{

std::atomic<std::size_t> g_count{0};
std::atomic<std::ptrdiff_t> g_live{0};
std::atomic<std::ptrdiff_t> g_peak{0};

void* Count(void* memory) noexcept
{
    if (!memory)
        return nullptr;
    auto const taken = static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    std::ptrdiff_t const live = g_live.fetch_add(taken) + taken;
    g_count.fetch_add(1);
    std::ptrdiff_t peak = g_peak.load();
    while (live > peak && !g_peak.compare_exchange_weak(peak, live))
    {
    }
    return memory;
}

void* TakeOrNull(std::size_t size) noexcept
{
    return Count(std::malloc(size > 0 ? size : 1));
}

void* Take(std::size_t size)
{
    void* const memory = TakeOrNull(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void* TakeAligned(std::size_t size, std::align_val_t alignment)
{
    std::size_t const unit = std::max(static_cast<std::size_t>(alignment), sizeof(void*));
    void* memory = nullptr;
    if (::posix_memalign(&memory, unit, std::max<std::size_t>(size, 1)) != 0)
        throw std::bad_alloc();
    return Count(memory);
}

void GiveBack(void* memory) noexcept
{
    if (!memory)
        return;
    g_live.fetch_sub(static_cast<std::ptrdiff_t>(malloc_usable_size(memory)));
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size)
{
    return Take(size);
}
void* operator new[](std::size_t size)
{
    return Take(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept
{
    return TakeOrNull(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept
{
    return TakeOrNull(size);
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return TakeAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return TakeAligned(size, alignment);
}
void operator delete(void* memory) noexcept
{
    GiveBack(memory);
}
void operator delete[](void* memory) noexcept
{
    GiveBack(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    GiveBack(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    GiveBack(memory);
}
void operator delete(void* memory, std::nothrow_t const&) noexcept
{
    GiveBack(memory);
}
void operator delete[](void* memory, std::nothrow_t const&) noexcept
{
    GiveBack(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept
{
    GiveBack(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept
{
    GiveBack(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    GiveBack(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    GiveBack(memory);
}

AllocationMeter::AllocationMeter() : m_start(g_live.load())
{
    g_peak.store(m_start);
    g_count.store(0);
}

std::size_t AllocationMeter::Count()
{
    return g_count.load();
}
std::ptrdiff_t AllocationMeter::Live() const
{
    return g_live.load() - m_start;
}
std::ptrdiff_t AllocationMeter::Peak() const
{
    return g_peak.load() - m_start;
}
