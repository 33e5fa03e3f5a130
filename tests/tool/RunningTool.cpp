#include "tests/tool/RunningTool.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

constexpr std::chrono::seconds kLongest{60};
// Between two looks at a condition, in milliseconds.
constexpr int kBetweenLooks = 2;

int OpenTerminal()
{
    int const terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0)
        throw std::runtime_error("no terminal");
    return terminal;
}

}  // namespace

RunningTool::RunningTool(std::vector<std::string> const& arguments, std::vector<int> const& ignored,
                         StandardError standardError)
{
    std::vector<std::string> words = {KVR_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_alive = ends[0];
    bool const hasTerminal = standardError == StandardError::kTerminal;
    if (hasTerminal)
        m_terminal = OpenTerminal();
    std::string const errorPath = hasTerminal ? ::ptsname(m_terminal) : "/dev/null";
    m_process = ::fork();
    if (m_process == 0)
    {
        for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
            std::signal(signal, SIG_DFL);
        for (int const signal : ignored)
            std::signal(signal, SIG_IGN);
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        ::dup2(::open(errorPath.c_str(), O_RDWR | O_NOCTTY), STDERR_FILENO);
        // Kept by whatever comes of this process.
        ::fcntl(ends[1], F_SETFD, 0);
        ::execv(pointers.front(), pointers.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    if (m_process < 0)
        throw std::runtime_error("the program could not be run");
}

RunningTool::~RunningTool()
{
    if (m_process > 0)
    {
        Send(SIGKILL);
        Wait();
    }
    // Nobody writes into the test's folder when that goes.
    AllEnd();
    ::close(m_alive);
    if (m_terminal >= 0)
        ::close(m_terminal);
}

bool RunningTool::WaitFor(std::function<bool()> const& condition)
{
    auto const end = std::chrono::steady_clock::now() + kLongest;
    while (!condition())
    {
        // Nobody writes into the pipe: what it tells is that nobody holds it any more.
        pollfd entry = {m_alive, POLLIN, 0};
        if (::poll(&entry, 1, kBetweenLooks) != 0 || std::chrono::steady_clock::now() > end)
            return false;
    }
    return true;
}

void RunningTool::Send(int signal) const
{
    ::kill(m_process, signal);
}

int RunningTool::Wait()
{
    int status = 0;
    if (::waitpid(m_process, &status, 0) != m_process)
        throw std::runtime_error("the program could not be waited for");
    m_process = -1;
    return status;
}

bool RunningTool::AllEnd()
{
    pollfd entry = {m_alive, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(std::chrono::milliseconds(kLongest).count())) == 1;
}

std::string RunningTool::ReadTerminal() const
{
    std::string text;
    std::array<char, 4096> buffer;
    // The end of the program is the terminal's: reading fails then.
    for (ssize_t got = 0; (got = ::read(m_terminal, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(got));
    return text;
}

}  // namespace KVR::Test
