#include "exchange/run/ThreadBlocks.h"

#include <gtest/gtest.h>

#include <Standard.hxx>
#include <array>
#include <cstdlib>
#include <cstring>

#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

constexpr std::size_t kSize = 100;

bool AreUsed()
{
    ThreadBlocks const blocks;
    return ThreadBlocks::IsInUse();
}

}  // namespace

TEST(ThreadBlocks, ABlockIsTheLastOneThatThisThreadFreedWithZerosInIt)
{
    ThreadBlocks const blocks;
    void* const used = Standard::Allocate(kSize);
    std::memset(used, 0x5A, kSize);
    Standard::Free(used);
    void* const block = Standard::Allocate(kSize);
    // Sanitizers keep what was freed.
    if (!kIsSanitized)
    {
        EXPECT_EQ(block, used);
    }
    EXPECT_EQ(std::memcmp(block, std::array<char, kSize>{}.data(), kSize), 0);
    Standard::Free(block);
}

TEST(ThreadBlocks, LastAsLongAsThereIsOne)
{
    EXPECT_FALSE(ThreadBlocks::IsInUse());
    {
        ThreadBlocks const first;
        ThreadBlocks const second;
        EXPECT_TRUE(ThreadBlocks::IsInUse());
    }
    EXPECT_FALSE(ThreadBlocks::IsInUse());
}

TEST(ThreadBlocks, GiveWayToAManagerOfTheUsers)
{
    EXPECT_TRUE(AreUsed());
    setenv("MMGT_OPT", "1", 1);
    EXPECT_FALSE(AreUsed());
    setenv("MMGT_OPT", "0", 1);
    EXPECT_TRUE(AreUsed());
    unsetenv("MMGT_OPT");
}

}  // namespace KVR::Test
