#include "tests/campaigns/ShortCalls.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>

namespace KVR::Campaigns
{

#ifdef __x86_64__

namespace
{

constexpr int kCallStop = SIGTRAP | 0x80;

[[noreturn]] void BecomeTraced(std::vector<std::string> const& arguments, std::string const& folder,
                               std::string const& said)
{
    std::vector<char*> words;
    for (std::string const& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    setenv("TMPDIR", folder.c_str(), 1);
    int const out = open((said + "/out").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    int const error = open((said + "/error").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    bool const isReady = chdir(folder.c_str()) == 0 && dup2(out, STDOUT_FILENO) >= 0 &&
                         dup2(error, STDERR_FILENO) >= 0 && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0;
    if (isReady)
    {
        raise(SIGSTOP);
        execv(words.front(), words.data());
    }
    _exit(126);
}

// At the beginning of a call: whether it reads or writes more than a byte.
bool IsLong(pid_t process)
{
    struct __ptrace_syscall_info info
    {
    };
    if (ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info) <= 0 || info.op != PTRACE_SYSCALL_INFO_ENTRY)
        return false;
    bool const isCall = info.entry.nr == SYS_read || info.entry.nr == SYS_write || info.entry.nr == SYS_pread64 ||
                        info.entry.nr == SYS_pwrite64;
    return isCall && info.entry.args[2] > 1;
}

void MakeShort(pid_t process)
{
    ptrace(PTRACE_POKEUSER, process, offsetof(struct user_regs_struct, rdx), 1);
}

}  // namespace

int RunWithShortCalls(std::vector<std::string> const& arguments, std::string const& folder, std::string const& said,
                      ShortCalls const& calls, long& count)
{
    count = 0;
    pid_t const program = fork();
    if (program < 0)
        throw std::runtime_error("no child process");
    if (program == 0)
        BecomeTraced(arguments, folder, said);
    int result = -1;
    int status = 0;
    waitpid(program, &status, 0);
    constexpr long kOptions =
        PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE | PTRACE_O_EXITKILL;
    ptrace(PTRACE_SETOPTIONS, program, nullptr, kOptions);
    ptrace(PTRACE_SYSCALL, program, nullptr, nullptr);
    for (pid_t process = waitpid(-1, &status, __WALL); process > 0; process = waitpid(-1, &status, __WALL))
    {
        if (!WIFSTOPPED(status))
        {
            if (process == program)
                result = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            continue;
        }
        int signal = WSTOPSIG(status);
        if (signal == kCallStop && IsLong(process))
        {
            ++count;
            if (count >= calls.first && count < calls.end)
                MakeShort(process);
        }
        // Stops that are of the tracing itself, those of new processes among them.
        if (signal == kCallStop || signal == SIGTRAP || signal == SIGSTOP)
            signal = 0;
        ptrace(PTRACE_SYSCALL, process, nullptr, signal);
    }
    return result;
}

#else

int RunWithShortCalls(std::vector<std::string> const&, std::string const&, std::string const&, ShortCalls const&,
                      long& count)
{
    count = 0;
    return -1;
}

#endif

}  // namespace KVR::Campaigns
