#include "exchange/run/ChildLimits.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <new>

#include "exchange/run/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

// A moment of work that no compiler takes away.
void Turn()
{
    struct rlimit limit
    {
    };
    getrlimit(RLIMIT_CPU, &limit);
}

// What a child under limits answers.
ChildResult RunWithin(ChildLimits const& limits, std::function<std::string()> const& work)
{
    return RunInChild([&](ChildVoice const&) { return work(); }, {}, limits);
}

}  // namespace

TEST(ChildLimits, FollowTheSizeOfAllFiles)
{
    TempFolder const folder;
    folder.Write("a", std::string(1'500'000, 'a'));
    folder.Write("b", std::string(500'000, 'b'));
    std::vector<std::string> const files = {folder.NarrowPathOf("a"), folder.NarrowPathOf("b"),
                                            folder.NarrowPathOf("missing")};
    ChildLimits const limits = ChildLimits::For(files, {});
    EXPECT_EQ(limits.seconds, 20U + 80U);
    EXPECT_EQ(limits.memory, (std::uint64_t{2} << 30U) + 256U * 2'000'000U);
    EXPECT_EQ(ChildLimits::For({}, {}).seconds, 20U);
    ChildLimits const chosen = ChildLimits::For(files, 7);
    EXPECT_EQ(chosen.seconds, 7U);
    EXPECT_EQ(chosen.memory, limits.memory);
}

TEST(ChildLimits, AChildThatTakesTooMuchProcessorTimeEndsWithASentence)
{
    ChildResult const result = RunWithin(ChildLimits{.seconds = 1},
                                         []() -> std::string
                                         {
                                             for (;;)
                                                 Turn();
                                         });
    EXPECT_EQ(result.answer, std::nullopt);
    EXPECT_EQ(result.signal, SIGXCPU);
    EXPECT_TRUE(result.IsOutOfTime());
    EXPECT_EQ(result.EndText(), "after the 1 s of processor time that it may take");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(ChildLimits, AChildGetsNoMoreMemoryThanItMayTake)
{
    ChildResult const result = RunWithin(
        ChildLimits{.memory = std::uint64_t{256} << 20U},
        []() -> std::string
        {
            constexpr std::size_t kPiece = std::size_t{64} << 20U;
            for (int pieces = 0; pieces < 8; ++pieces)
                if (mmap(nullptr, kPiece, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) == MAP_FAILED)
                    throw std::bad_alloc();
            return "all of it";
        });
    EXPECT_EQ(result.answer, std::nullopt);
    EXPECT_EQ(result.failure, "there is not enough memory for it, which may take 256 MiB");
}

TEST(ChildLimits, AChildReachesNoNetworkAndLeavesNoImageOfItsMemory)
{
    ChildResult const result =
        RunWithin({},
                  []
                  {
                      std::string answer;
                      for (int const family : {AF_INET, AF_INET6, AF_UNIX})
                          answer += socket(family, SOCK_STREAM, 0) < 0 && errno == EACCES ? '-' : '+';
                      bool const isRefused = syscall(SYS_io_uring_setup, 1, nullptr) < 0 && errno == EACCES;
                      answer += isRefused ? '-' : '+';
                      struct rlimit core = {1, 1};
                      getrlimit(RLIMIT_CORE, &core);
                      return answer + std::to_string(core.rlim_cur);
                  });
    EXPECT_EQ(result.answer, "----0");
}

TEST(ChildLimits, WhatAChildWorksOnIsKnownWhenItEnds)
{
    auto const work = [](ChildVoice const& voice) -> std::string
    {
        voice.Subject("one");
        voice.Subject("");
        voice.Subject("two");
        std::raise(SIGKILL);
        return {};
    };
    EXPECT_EQ(RunInChild(work, {}).subject, "two");
    EXPECT_EQ(RunWithin({}, [] { return std::string("done"); }).subject, "");
}

}  // namespace KVR::Test
