#include "tests/campaigns/TracedRun.h"

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
#include <set>
#include <stdexcept>

namespace KVR::Campaigns
{

#ifdef __x86_64__

namespace
{

constexpr int kCallStop = SIGTRAP | 0x80;
// By the clock.
constexpr unsigned kMostSeconds = 300;

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
        alarm(kMostSeconds);
        raise(SIGSTOP);
        execv(words.front(), words.data());
    }
    _exit(126);
}

// Whether a process is at the beginning of a call of the kind.
bool IsMeant(pid_t process, long call)
{
    struct __ptrace_syscall_info info
    {
    };
    if (ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info) <= 0 || info.op != PTRACE_SYSCALL_INFO_ENTRY)
        return false;
    auto const number = static_cast<long>(info.entry.nr);
    if (call >= 0)
        return number == call;
    bool const isTransfer =
        number == SYS_read || number == SYS_write || number == SYS_pread64 || number == SYS_pwrite64;
    return isTransfer && info.entry.args[2] > 1;
}

// The processes of a program, from stop to stop.
class Tracer
{
public:
    explicit Tracer(TracedCalls const& calls) : m_calls(calls) {}

    long Count() const { return m_count; }

    void AtCall(pid_t process)
    {
        if (m_failing.erase(process) > 0)
            ptrace(PTRACE_POKEUSER, process, offsetof(struct user_regs_struct, rax), -long{m_calls.error});
        else if (IsMeant(process, m_calls.call))
        {
            ++m_count;
            if (m_count >= m_calls.first && m_count < m_calls.end)
                Interfere(process);
        }
    }

private:
    void Interfere(pid_t process)
    {
        if (m_calls.call < 0)
        {
            ptrace(PTRACE_POKEUSER, process, offsetof(struct user_regs_struct, rdx), 1L);
            return;
        }
        // There is no such call; what it answers is replaced when it ends. Who closes a file gets it closed in any
        // case.
        if (m_calls.call != SYS_close)
            ptrace(PTRACE_POKEUSER, process, offsetof(struct user_regs_struct, orig_rax), -1L);
        m_failing.insert(process);
    }

    TracedCalls const& m_calls;
    long m_count = 0;
    std::set<pid_t> m_failing;
};

}  // namespace

int RunTraced(std::vector<std::string> const& arguments, std::string const& folder, std::string const& said,
              TracedCalls const& calls, long& count)
{
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
    Tracer tracer(calls);
    for (pid_t process = waitpid(-1, &status, __WALL); process > 0; process = waitpid(-1, &status, __WALL))
    {
        if (!WIFSTOPPED(status))
        {
            if (process == program)
                result = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            continue;
        }
        int signal = WSTOPSIG(status);
        if (signal == kCallStop)
            tracer.AtCall(process);
        // Stops that are of the tracing itself, those of new processes among them.
        if (signal == kCallStop || signal == SIGTRAP || signal == SIGSTOP)
            signal = 0;
        ptrace(PTRACE_SYSCALL, process, nullptr, signal);
    }
    count = tracer.Count();
    return result;
}

#else

int RunTraced(std::vector<std::string> const&, std::string const&, std::string const&, TracedCalls const&, long& count)
{
    count = 0;
    return -1;
}

#endif

}  // namespace KVR::Campaigns
