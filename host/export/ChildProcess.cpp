#include "host/export/ChildProcess.h"

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string_view>
#include <system_error>

namespace KVR
{

namespace
{

constexpr char kDone = '+';
constexpr char kFailed = '-';

[[noreturn]] void ThrowSystemError(char const* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void WriteAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty())
    {
        ssize_t const written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string ReadAll(int descriptor)
{
    std::string text;
    std::array<char, 4096> bytes{};
    for (;;)
    {
        ssize_t const read = ::read(descriptor, bytes.data(), bytes.size());
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0)
            return text;
        text.append(bytes.data(), static_cast<std::size_t>(read));
    }
}

// Does the work and ends the process, without what the parent would do at its end.
[[noreturn]] void WorkAndExit(std::function<std::string()> const& work, int descriptor)
{
    std::string answer;
    try
    {
        answer = kDone + work();
    }
    catch (std::exception const& exception)
    {
        answer = std::string(1, kFailed) + exception.what();
    }
    WriteAll(descriptor, answer);
    ::_exit(0);
}

}  // namespace

ChildResult RunInChild(std::function<std::string()> const& work)
{
    std::array<int, 2> ends{};
    // What stands in buffers would otherwise be written by both.
    std::fflush(nullptr);
    if (::pipe(ends.data()) != 0)
        ThrowSystemError("no pipe to a child process");
    pid_t const child = ::fork();
    if (child < 0)
    {
        int const error = errno;
        ::close(ends[0]);
        ::close(ends[1]);
        errno = error;
        ThrowSystemError("no child process");
    }
    if (child == 0)
    {
        ::close(ends[0]);
        WorkAndExit(work, ends[1]);
    }
    ::close(ends[1]);
    std::string const answer = ReadAll(ends[0]);
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
    {
        if (errno != EINTR)
            ThrowSystemError("the child process is out of sight");
    }
    ChildResult result;
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    // One that neither answers nor dies by a signal was ended from within.
    result.hasFailed = answer.empty() || answer.front() != kDone;
    if (!answer.empty())
        result.text = answer.substr(1);
    return result;
}

}  // namespace KVR
