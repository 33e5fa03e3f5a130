#include "exchange/run/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>

namespace KVR
{

namespace
{

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupted = 0;

extern "C" void NoteInterruption(int)
{
    interrupted = 1;
}

[[noreturn]] void Fail(char const* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void RunAndExit(std::function<std::string()> const& work, int pipe)
{
    // A file that grows beyond a limit is a failed write, not the end.
    std::signal(SIGXFSZ, SIG_IGN);
    std::string const answer = work() + '\n';
    for (std::size_t done = 0; done < answer.size();)
    {
        ssize_t const count = write(pipe, answer.data() + done, answer.size() - done);
        if (count <= 0)
            _exit(EXIT_FAILURE);
        done += static_cast<std::size_t>(count);
    }
    // Without destructors: what the work has built is given back with the process, at once.
    _exit(EXIT_SUCCESS);
}

// Waits until there is something to read; an interruption ends the wait.
void WaitFor(int pipe)
{
    sigset_t mask;
    sigprocmask(SIG_SETMASK, nullptr, &mask);
    for (int const signal : kSignals)
        sigdelset(&mask, signal);
    struct pollfd entry = {pipe, POLLIN, 0};
    // Signals arrive here and nowhere else, so that none gets lost between a look and the wait.
    ppoll(&entry, 1, nullptr, &mask);
}

}  // namespace

InterruptionScope::InterruptionScope()
{
    sigset_t mask;
    sigemptyset(&mask);
    struct sigaction action = {};
    action.sa_handler = &NoteInterruption;
    for (std::size_t i = 0; i < m_actions.size(); ++i)
    {
        sigaddset(&mask, kSignals[i]);
        sigaction(kSignals[i], nullptr, &m_actions[i]);
        // What whoever started the program wants to be ignored stays so.
        if (m_actions[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
    sigprocmask(SIG_BLOCK, &mask, &m_mask);
}

InterruptionScope::~InterruptionScope()
{
    for (std::size_t i = 0; i < m_actions.size(); ++i)
        sigaction(kSignals[i], &m_actions[i], nullptr);
    sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

ChildResult RunInChild(std::function<std::string()> const& work)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        Fail("a pipe");
    interrupted = 0;
    InterruptionScope const signals;
    pid_t const child = fork();
    if (child < 0)
    {
        close(ends[0]);
        close(ends[1]);
        Fail("a child process");
    }
    if (child == 0)
    {
        close(ends[0]);
        // Signals stay held back: whoever started this ends it.
        RunAndExit(work, ends[1]);
    }
    close(ends[1]);
    ChildResult result;
    std::string answer;
    std::array<char, 4096> bytes;
    while (!interrupted)
    {
        WaitFor(ends[0]);
        if (interrupted)
            break;
        ssize_t const count = read(ends[0], bytes.data(), bytes.size());
        if (count > 0)
            answer.append(bytes.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            break;
    }
    close(ends[0]);
    if (interrupted)
        kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    result.isInterrupted = interrupted != 0;
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS && answer.ends_with('\n'))
    {
        answer.pop_back();
        result.answer = std::move(answer);
    }
    return result;
}

std::string SignalText(int signal)
{
    char const* const text = strsignal(signal);
    return text ? text : "signal " + std::to_string(signal);
}

}  // namespace KVR
