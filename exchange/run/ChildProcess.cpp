#include "exchange/run/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Standard_Failure.hxx>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>
#include <stdexcept>
#include <system_error>

#include "exchange/run/ChildReport.h"
#include "exchange/run/OutOfMemory.h"
#include "exchange/run/StallWatch.h"
#include "framework/api/Exception.h"
#include "framework/kernel/KernelMessages.h"

namespace KVR
{

namespace
{

// How a process ends for which there is not enough memory.
constexpr int kOutOfMemory = 3;
// How long the callback waits to be asked, and how long a child is not looked at where there is no callback, in
// milliseconds.
constexpr int kBetweenQuestions = 200;
constexpr int kBetweenLooks = 1000;

[[noreturn]] void Fail(char const* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

// What the work answers or why it failed, as the last record.
void Work(std::function<std::string(ChildVoice const&)> const& work, ChildVoice const& voice)
{
    try
    {
        voice.Result(work(voice));
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (std::exception const& error)
    {
        // What libraries say of content that they were not made for is no sentence.
        bool const isSaid = dynamic_cast<std::runtime_error const*>(&error) || dynamic_cast<Exception const*>(&error);
        voice.Failure(isSaid ? error.what() : "its content makes no sense");
    }
    catch (Standard_Failure const& error)
    {
        voice.Failure("Open CASCADE failed: " + KernelFailureText(error));
    }
}

// What libraries print, Open CASCADE above all, and what the C library says of a crash, is not for the user.
void Silence()
{
    int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0)
        return;
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

[[noreturn]] void WorkAndExit(std::function<std::string(ChildVoice const&)> const& work, int pipe, pid_t parent,
                              ChildLimits const& limits)
{
    // Whoever started this ends it, also by ending, which may have come to pass before this process asked for it:
    // signals of the terminal are not for it.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE);
    for (int const signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, SIG_IGN);
    Silence();
    // A file that grows beyond a limit is a failed write, not the end.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGXCPU, SIG_DFL);
    limits.Apply();
    EndWhereMemoryRunsOut(kOutOfMemory);
    try
    {
        Work(work, ChildVoice(pipe));
    }
    catch (std::bad_alloc const&)
    {
        // Nothing may leave this function: the caller's own code would go on in two processes.
        _exit(kOutOfMemory);
    }
    catch (...)
    {
        _exit(EXIT_FAILURE);
    }
    // Without destructors: what the work has built is given back with the process, at once.
    _exit(EXIT_SUCCESS);
}

enum class Ending
{
    kEnd,
    /// The callback does not want to go on.
    kCancelled,
    kStalled
};

// Reads what a child tells to its end.
Ending Listen(int pipe, StallWatch& watch, ChildReport& report, Progress const& progress)
{
    std::array<char, 4096> bytes;
    for (;;)
    {
        struct pollfd entry = {pipe, POLLIN, 0};
        // A signal ends the wait, too.
        if (poll(&entry, 1, progress ? kBetweenQuestions : kBetweenLooks) <= 0)
        {
            if (progress && !progress(report.LastProgress()))
                return Ending::kCancelled;
            if (watch.HasStalled())
                return Ending::kStalled;
            continue;
        }
        ssize_t const count = read(pipe, bytes.data(), bytes.size());
        if (count == 0)
            return Ending::kEnd;
        if (count > 0 && !report.Take({bytes.data(), static_cast<std::size_t>(count)}, progress))
            return Ending::kCancelled;
        if (count < 0 && errno != EINTR)
            return Ending::kEnd;
    }
}

}  // namespace

void ChildVoice::Progress(ProgressReport const& report) const
{
    Write(ChildReport::Record(ChildReport::Kind::kProgress, ChildReport::ProgressText(report)));
}

void ChildVoice::Remark(std::string const& sentence) const
{
    Write(ChildReport::Record(ChildReport::Kind::kRemark, sentence));
}

void ChildVoice::Subject(std::string const& name) const
{
    Write(ChildReport::Record(ChildReport::Kind::kSubject, name));
}

void ChildVoice::Failure(std::string const& cause) const
{
    Write(ChildReport::Record(ChildReport::Kind::kFailure, cause));
}

void ChildVoice::Result(std::string const& answer) const
{
    Write(ChildReport::Record(ChildReport::Kind::kResult, answer));
}

void ChildVoice::Write(std::string const& record) const
{
    for (std::size_t done = 0; done < record.size();)
    {
        ssize_t const count = write(m_pipe, record.data() + done, record.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            _exit(EXIT_FAILURE);
        done += static_cast<std::size_t>(count);
    }
}

bool ChildResult::IsOutOfTime() const noexcept
{
    return signal == SIGXCPU;
}

std::string ChildResult::EndText() const
{
    if (IsOutOfTime())
        return limits.TimeText();
    if (hasStalled)
        return limits.StallText();
    char const* const text = signal != 0 ? strsignal(signal) : "early";
    return std::string("(") + (text ? text : "signal " + std::to_string(signal)) + ')';
}

// A child process, and the end of the pipe on which it tells. What still works ends with the object.
class ChildWork::Child
{
public:
    // Without a process yet.
    explicit Child(int pipe) noexcept : m_pipe(pipe) {}
    ~Child()
    {
        if (m_process > 0)
        {
            kill(m_process, SIGKILL);
            Wait();
        }
        close(m_pipe);
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;

    void SetProcess(pid_t process) noexcept { m_process = process; }
    pid_t Process() const noexcept { return m_process; }
    int Pipe() const noexcept { return m_pipe; }
    // The state in which it ended.
    int Wait()
    {
        int status = 0;
        while (waitpid(m_process, &status, 0) < 0 && errno == EINTR)
        {
        }
        m_process = 0;
        return status;
    }

private:
    pid_t m_process = 0;
    int m_pipe;
};

ChildWork::ChildWork(std::function<std::string(ChildVoice const&)> const& work, ChildLimits const& limits)
    : m_limits(limits)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        Fail("a pipe");
    std::unique_ptr<Child> child;
    try
    {
        // Before there is a process, which nobody would end when memory runs out.
        child = std::make_unique<Child>(ends[0]);
    }
    catch (std::bad_alloc const&)
    {
        close(ends[0]);
        close(ends[1]);
        throw;
    }
    // What the caller has yet to print would be printed by the child as well, when the work flushes it.
    std::cout.flush();
    std::clog.flush();
    std::fflush(stdout);
    pid_t const self = getpid();
    pid_t const process = fork();
    if (process == 0)
    {
        close(ends[0]);
        WorkAndExit(work, ends[1], self, limits);
    }
    int const error = errno;
    close(ends[1]);
    if (process < 0)
    {
        child.reset();
        errno = error;
        Fail("a child process");
    }
    child->SetProcess(process);
    m_child = std::move(child);
}

ChildWork::~ChildWork() = default;
ChildWork::ChildWork(ChildWork&&) noexcept = default;
ChildWork& ChildWork::operator=(ChildWork&&) noexcept = default;

ChildResult ChildWork::Finish(Progress const& progress)
{
    std::unique_ptr<Child> const child = std::move(m_child);
    ChildReport report;
    ChildResult result;
    result.limits = m_limits;
    StallWatch watch(child->Process(), std::chrono::seconds(m_limits.standstill));
    Ending const ending = Listen(child->Pipe(), watch, report, progress);
    result.isCancelled = ending == Ending::kCancelled;
    result.hasStalled = ending == Ending::kStalled;
    result.subject = report.LastSubject();
    if (ending != Ending::kEnd)
        return result;
    int const status = child->Wait();
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.isOutOfMemory = WIFEXITED(status) && WEXITSTATUS(status) == kOutOfMemory;
    if (result.isOutOfMemory)
    {
        result.failure = m_limits.MemoryText();
        return result;
    }
    if (!report.IsWhole())
        return result;
    result.answer = report.Result();
    result.remarks = report.Remarks();
    result.failure = report.Failure();
    return result;
}

ChildResult RunInChild(std::function<std::string(ChildVoice const&)> const& work, Progress const& progress,
                       ChildLimits const& limits)
{
    return ChildWork(work, limits).Finish(progress);
}

}  // namespace KVR
