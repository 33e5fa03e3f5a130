#include "exchange/run/StallWatch.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <future>
#include <iterator>
#include <thread>

#include "exchange/run/ChildProcess.h"

namespace KVR::Test
{

namespace
{

// For what nobody brings.
void WaitForEver()
{
    std::promise<void> never;
    never.get_future().wait();
}

// A process that does something to its end, which is that of the object.
class Process
{
public:
    explicit Process(std::function<void()> const& work) : m_process(fork())
    {
        if (m_process != 0)
            return;
        work();
        _exit(0);
    }
    ~Process()
    {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    Process(Process const&) = delete;
    Process& operator=(Process const&) = delete;

    pid_t Id() const { return m_process; }
    // The letter of its first thread.
    char State() const
    {
        std::ifstream file("/proc/" + std::to_string(m_process) + "/stat");
        std::string const text(std::istreambuf_iterator<char>(file), {});
        return text.at(text.rfind(')') + 2);
    }

private:
    pid_t m_process;
};

// Gives others the processor until something is so, which a test that fails may wait for in vain.
bool Becomes(std::function<bool()> const& isSo)
{
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!isSo() && std::chrono::steady_clock::now() < end)
        sched_yield();
    return isSo();
}

}  // namespace

TEST(WaitsForItself, AProcessWhoseThreadsAllWaitForOneAnother)
{
    Process const process(
        []
        {
            std::thread other(&WaitForEver);
            other.join();
        });
    EXPECT_TRUE(Becomes([&] { return WaitsForItself(process.Id()); }));
    // Whoever stops it, means to go on.
    kill(process.Id(), SIGSTOP);
    EXPECT_EQ(waitpid(process.Id(), nullptr, WUNTRACED), process.Id());
    EXPECT_FALSE(WaitsForItself(process.Id()));
}

TEST(WaitsForItself, NotAProcessThatWaitsForOthersOrComputes)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    auto const read = [&]
    {
        char byte = 0;
        static_cast<void>(::read(ends[0], &byte, 1));
    };
    Process const reading(read);
    Process const half(
        [&]
        {
            std::thread other(&WaitForEver);
            read();
        });
    Process const pausing([] { pause(); });
    Process const computing(
        []
        {
            for (;;)
                sched_yield();
        });
    for (Process const* const process : {&reading, &half, &pausing})
    {
        EXPECT_TRUE(Becomes([&] { return process->State() == 'S'; }));
        EXPECT_FALSE(WaitsForItself(process->Id()));
    }
    EXPECT_EQ(computing.State(), 'R');
    EXPECT_FALSE(WaitsForItself(computing.Id()));
    EXPECT_FALSE(WaitsForItself(0));
    close(ends[0]);
    close(ends[1]);
}

TEST(RunInChild, WhatWaitsForItselfIsEnded)
{
    for (Progress const& progress : {Progress(), Progress([](ProgressReport const&) { return true; })})
    {
        ChildResult const result = RunInChild(
            [](ChildVoice const& voice) -> std::string
            {
                voice.Subject("a body");
                WaitForEver();
                return {};
            },
            progress, ChildLimits{.standstill = 1});
        EXPECT_TRUE(result.hasStalled);
        EXPECT_EQ(result.answer, std::nullopt);
        EXPECT_EQ(result.subject, "a body");
        EXPECT_EQ(result.EndText(),
                  "after its threads had waited for one another for 1 s, as they do where they lack memory");
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(StallWatch, WhatTakesProcessorTimeNowAndThenHasNotStalled)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    Process const process(
        [&]
        {
            char byte = 0;
            static_cast<void>(::read(ends[0], &byte, 1));
            WaitForEver();
        });
    StallWatch watch(process.Id(), std::chrono::seconds(0));
    EXPECT_TRUE(Becomes([&] { return process.State() == 'S'; }));
    EXPECT_FALSE(watch.HasStalled());
    EXPECT_FALSE(watch.HasStalled());
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    EXPECT_TRUE(Becomes([&] { return WaitsForItself(process.Id()); }));
    // What it took since counts at first.
    EXPECT_FALSE(watch.HasStalled());
    EXPECT_TRUE(watch.HasStalled());
    close(ends[0]);
    close(ends[1]);
}

}  // namespace KVR::Test
