#include "exchange/run/ChildProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Message.hxx>
#include <Standard_OutOfRange.hxx>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <tuple>

#include "exchange/run/Heard.h"

namespace KVR::Test
{

namespace
{

// Until somebody ends it.
[[noreturn]] void Wait()
{
    for (;;)
        pause();
}

// No child is left behind.
void ExpectNoChild()
{
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace

TEST(RunInChild, BringsTheAnswerTheRemarksAndTheProgress)
{
    std::string stages;
    ChildResult const result = RunInChild(
        [](ChildVoice const& voice)
        {
            voice.Progress({"one", 0.5});
            voice.Remark("a\nb");
            voice.Progress({"two", std::nullopt});
            return std::string(200'000, 'x');
        },
        [&](ProgressReport const& report)
        {
            if (!stages.ends_with(report.stage))
                stages += report.stage;
            return true;
        });
    EXPECT_EQ(result.answer, std::string(200'000, 'x'));
    EXPECT_EQ(result.remarks, std::vector<std::string>{"a\nb"});
    EXPECT_EQ(result.failure, std::nullopt);
    EXPECT_EQ(stages, "onetwo");
    ExpectNoChild();
}

TEST(RunInChild, AnExceptionIsAFailureWithItsText)
{
    ChildResult const result =
        RunInChild([](ChildVoice const&) -> std::string { throw std::runtime_error("no luck"); }, {});
    EXPECT_EQ(result.answer, std::nullopt);
    EXPECT_EQ(result.failure, "no luck");
    EXPECT_EQ(result.signal, 0);
}

// Texts of libraries, which were made for other content.
TEST(RunInChild, WhatALibraryThrowsIsASentence)
{
    ChildResult const result =
        RunInChild([](ChildVoice const&) -> std::string { throw std::length_error("vector::reserve"); }, {});
    EXPECT_EQ(result.failure, "its content makes no sense");
}

// The child would go on in the caller's code, beside the caller.
TEST(RunInChild, WhatIsNoExceptionEndsTheChildWithinIt)
{
    pid_t const self = getpid();
    ChildResult const result = RunInChild([](ChildVoice const&) -> std::string { throw 1; }, {});
    if (getpid() != self)
        _exit(EXIT_FAILURE);
    EXPECT_FALSE(result.answer || result.failure);
    EXPECT_EQ(result.EndText(), "(early)");
}

TEST(RunInChild, ACrashAndAnEarlyEndAreTold)
{
    ChildResult const killed = RunInChild(
        [](ChildVoice const& voice) -> std::string
        {
            voice.Remark("so far");
            std::raise(SIGKILL);
            return {};
        },
        {});
    EXPECT_EQ(killed.answer, std::nullopt);
    EXPECT_EQ(killed.failure, std::nullopt);
    EXPECT_EQ(killed.signal, SIGKILL);
    EXPECT_EQ(killed.EndText(), "(Killed)");
    ChildResult const early = RunInChild([](ChildVoice const&) -> std::string { _exit(EXIT_SUCCESS); }, {});
    EXPECT_EQ(early.answer, std::nullopt);
    EXPECT_EQ(early.EndText(), "(early)");
}

TEST(RunInChild, IsCancelledWhileTheChildIsSilent)
{
    int questions = 0;
    ChildResult const result = RunInChild([](ChildVoice const&) -> std::string { Wait(); },
                                          [&](ProgressReport const&) { return ++questions < 3; });
    EXPECT_TRUE(result.isCancelled);
    EXPECT_EQ(result.answer, std::nullopt);
    EXPECT_EQ(questions, 3);
    ExpectNoChild();
}

TEST(RunInChild, WhatTheCallbackThrowsEndsTheChildAndComesOut)
{
    auto const work = [](ChildVoice const& voice) -> std::string
    {
        voice.Progress({"begun", std::nullopt});
        Wait();
    };
    EXPECT_THROW(RunInChild(work, [](ProgressReport const&) -> bool { throw std::out_of_range("enough"); }),
                 std::out_of_range);
    ExpectNoChild();
}

TEST(RunInChild, WhatTheCallerPrintedIsPrintedOnce)
{
    testing::internal::CaptureStdout();
    std::printf("printed ");
    std::cout << "once";
    RunInChild(
        [](ChildVoice const&)
        {
            std::cout.flush();
            std::fflush(stdout);
            return std::string();
        },
        {});
    std::cout.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "printed once");
}

TEST(RunInChild, WhatTheWorkPrintsIsNotHeard)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    RunInChild(
        [](ChildVoice const&)
        {
            std::cout << "on a stream" << std::endl;
            std::cerr << "on another" << std::endl;
            Message::SendFail("by the messenger");
            std::ignore = write(STDERR_FILENO, "by hand", 7);
            return std::string();
        },
        {});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(RunInChild, AFailureOfOpenCascadeIsASentenceOfItsKind)
{
    ChildResult const result =
        RunInChild([](ChildVoice const&) -> std::string { throw Standard_OutOfRange("gp_Vec() - index 7"); }, {});
    EXPECT_EQ(result.failure, "Open CASCADE failed: it has a number that is out of its range");
}

TEST(RunInChild, EndsWithItsCaller)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    pid_t const caller = fork();
    ASSERT_GE(caller, 0);
    if (caller == 0)
    {
        // The child holds the writing end open.
        close(ends[0]);
        RunInChild(
            [](ChildVoice const& voice) -> std::string
            {
                voice.Progress({"begun", std::nullopt});
                Wait();
            },
            [](ProgressReport const&) -> bool { _exit(EXIT_SUCCESS); });
        _exit(EXIT_FAILURE);
    }
    close(ends[1]);
    int status = -1;
    waitpid(caller, &status, 0);
    EXPECT_EQ(status, 0);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    close(ends[0]);
}

TEST(Heard, WhatTheCallbackThrowsMeansNoAndIsThrownInTheEnd)
{
    bool hasEnded = false;
    auto const work = [&](Progress const& heard)
    {
        bool const goesOn = heard({});
        hasEnded = true;
        return goesOn;
    };
    EXPECT_THROW(Heard([](ProgressReport const&) -> bool { throw 7; }, work), int);
    EXPECT_TRUE(hasEnded);
    EXPECT_TRUE(Heard([](ProgressReport const&) { return true; }, work));
}

}  // namespace KVR::Test
