// What docs/hosting.md says of memory that runs out. This program's operator new can be told to fail. Each test runs in
// a process of its own, which ends without a count of leaks: Xerces-C loses what it holds when memory fails within it.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/support/FullScene.h"
#include "tests/support/TestScene.h"

namespace
{

// How many allocations succeed before one fails; negative for all.
long g_left = -1;
bool g_failsOnce = false;

void* Take(std::size_t size)
{
    if (g_left == 0)
    {
        if (g_failsOnce)
            g_left = -1;
        throw std::bad_alloc();
    }
    if (g_left > 0)
        --g_left;
    if (void* const memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
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
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace KVR::Test
{

namespace
{

struct Outcomes
{
    int badAllocs = 0;
    int fileExceptions = 0;
    int survived = 0;
    bool isDone = false;
};

// Reads the scene with so many allocations before the failure; any other exception goes on to the test, which fails.
void ReadWith(long allocations, bool failsOnce, UTF16String const& path, Outcomes& outcomes)
{
    XMLProducer producer(path, nullptr);
    g_failsOnce = failsOnce;
    g_left = allocations;
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        outcomes.isDone = g_left > 0;
        outcomes.survived += !outcomes.isDone;
    }
    catch (std::bad_alloc const&)
    {
        ++outcomes.badAllocs;
    }
    catch (FileException const&)
    {
        ++outcomes.fileExceptions;
    }
    g_left = -1;
}

Outcomes ReadWithEveryFailure(bool failsOnce)
{
    // The host's own hold: an Initialize that fails half-way cannot be repeated.
    xercesc::XMLPlatformUtils::Initialize();
    Outcomes outcomes;
    {
        TestScene scene(FullScene());
        WriteSideFiles(scene);
        UTF16String const path = Wide(scene.Path().c_str());
        for (long allocations = 0; !outcomes.isDone && allocations < 1'000'000; ++allocations)
            ReadWith(allocations, failsOnce, path, outcomes);
    }
    xercesc::XMLPlatformUtils::Terminate();
    return outcomes;
}

class HostingMemory : public testing::Test
{
protected:
    HostingMemory() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~HostingMemory() override { GTEST_FLAG_SET(death_test_style, "fast"); }
};

// Ends the process: with 0 when the outcomes hold.
[[noreturn]] void End(Outcomes const& outcomes, bool holds)
{
    std::fprintf(stderr, "%d bad_alloc, %d FileException, %d survived\n", outcomes.badAllocs, outcomes.fileExceptions,
                 outcomes.survived);
    std::_Exit(outcomes.isDone && holds ? 0 : 2);
}

[[noreturn]] void RunOut()
{
    Outcomes const outcomes = ReadWithEveryFailure(false);
    End(outcomes, outcomes.badAllocs > 500 && outcomes.fileExceptions == 0);
}

[[noreturn]] void RunShort()
{
    Outcomes const outcomes = ReadWithEveryFailure(true);
    End(outcomes, outcomes.badAllocs > 500 && outcomes.fileExceptions == 0);
}

}  // namespace

TEST_F(HostingMemory, ThatHasRunOutIsABadAlloc)
{
    EXPECT_EXIT(RunOut(), testing::ExitedWithCode(0), "");
}

TEST_F(HostingMemory, ThatIsShortOnceIsABadAllocToo)
{
    EXPECT_EXIT(RunShort(), testing::ExitedWithCode(0), "");
}

}  // namespace KVR::Test
