#include "tests/tool/ToolRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include <cstdlib>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

std::string Content(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> WithTool(std::vector<std::string> const& arguments)
{
    std::vector<std::string> words = {KVR_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

pid_t Start(std::vector<std::string> words, int out, int error, rlim_t mostBytes = RLIM_INFINITY)
{
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t const child = ::fork();
    if (child != 0)
        return child;
    if (mostBytes != RLIM_INFINITY)
    {
        struct rlimit const limit = {mostBytes, mostBytes};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    // Whoever runs the tests in the background may have them ignored.
    for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_DFL);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(error, STDERR_FILENO);
    ::execv(pointers.front(), pointers.data());
    ::_exit(127);
}

int StatusOf(int status)
{
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

ToolRun Run(std::vector<std::string> const& words, rlim_t mostBytes)
{
    TempFolder folder;
    std::string const outPath = folder.NarrowPathOf("out");
    std::string const errorPath = folder.NarrowPathOf("error");
    int const out = ::open(outPath.c_str(), O_WRONLY | O_CREAT, 0600);
    int const error = ::open(errorPath.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t const child = Start(words, out, error, mostBytes);
    ::close(out);
    ::close(error);
    int status = 0;
    struct rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child)
        throw std::runtime_error("the program could not be run");
    return {StatusOf(status), Content(outPath), Content(errorPath), usage.ru_maxrss};
}

// Every dump that a test makes is as docs/dump.schema.json says. The validator takes minutes for lists of millions.
void ExpectDumpFitsSchema(ToolRun const& dump)
{
    constexpr std::size_t kMostBytes = 4'000'000;
    if ((dump.status != 0 && dump.status != 1) || !dump.out.starts_with('{') || dump.out.size() > kMostBytes)
        return;
    TempFolder folder;
    folder.Write("dump.json", dump.out);
    ToolRun const validator = Run({KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS,
                                   std::string(KVR_DOCS_DIR) + "/dump.schema.json", folder.NarrowPathOf("dump.json")},
                                  RLIM_INFINITY);
    EXPECT_EQ(validator.status, 0) << validator.out << validator.error;
}

}  // namespace

ToolRun RunTool(std::vector<std::string> const& arguments)
{
    ToolRun run = Run(WithTool(arguments), RLIM_INFINITY);
    if (!arguments.empty() && arguments.front() == "dump")
        ExpectDumpFitsSchema(run);
    return run;
}

ToolRun RunProgram(std::vector<std::string> const& words)
{
    return Run(words, RLIM_INFINITY);
}

ToolRun RunToolWithFileLimit(std::vector<std::string> const& arguments, unsigned long long bytes)
{
    return Run(WithTool(arguments), bytes);
}

int RunToolUntil(std::vector<std::string> const& arguments, std::function<bool()> const& isTime, int signal)
{
    int const nowhere = ::open("/dev/null", O_WRONLY);
    pid_t const child = Start(WithTool(arguments), nowhere, nowhere);
    ::close(nowhere);
    int status = 0;
    // A program that ends by itself ends the wait, too.
    while (!isTime())
    {
        if (pid_t const ended = ::waitpid(child, &status, WNOHANG); ended == child)
            return StatusOf(status);
        ::sched_yield();
    }
    ::kill(child, signal);
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        throw std::runtime_error("the program could not be run");
    return StatusOf(status);
}

ToolRun RunToolOnTerminal(std::vector<std::string> const& arguments)
{
    int const terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0)
        throw std::runtime_error("no terminal");
    int const out = ::open(::ptsname(terminal), O_RDWR | O_NOCTTY);
    pid_t const child = Start(WithTool(arguments), out, STDERR_FILENO);
    ::close(out);
    ToolRun run;
    char buffer[4096];
    // The end of the program is the terminal's: reading fails then.
    for (ssize_t got; (got = ::read(terminal, buffer, sizeof buffer)) > 0;)
        run.out.append(buffer, static_cast<std::size_t>(got));
    ::close(terminal);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        throw std::runtime_error("the program could not be run");
    run.status = StatusOf(status);
    return run;
}

int RunToolWithoutReader(std::vector<std::string> const& arguments)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    ::close(ends[0]);
    pid_t const child = Start(WithTool(arguments), ends[1], STDERR_FILENO);
    ::close(ends[1]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        throw std::runtime_error("the program could not be run");
    return StatusOf(status);
}

}  // namespace KVR::Test
