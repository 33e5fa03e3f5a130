#include "exchange/run/ChildLimits.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <system_error>

namespace KVR
{

namespace
{

// What this process has, in bytes of address space; 0 where the system does not tell.
std::uint64_t AddressSpace() noexcept
{
    unsigned long pages = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "re");
    if (!file)
        return 0;
    bool const isRead = std::fscanf(file, "%lu", &pages) == 1;
    std::fclose(file);
    return isRead ? pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) : 0;
}

// Never above the limits that there are.
void Limit(__rlimit_resource resource, std::uint64_t soft, std::uint64_t hard) noexcept
{
    struct rlimit limit
    {
    };
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_max = std::min<rlim_t>(limit.rlim_max, hard);
    limit.rlim_cur = std::min({limit.rlim_cur, limit.rlim_max, static_cast<rlim_t>(soft)});
    setrlimit(resource, &limit);
}

#if defined(__x86_64__)
constexpr unsigned kArchitecture = AUDIT_ARCH_X86_64;
// From here on the calls have other numbers, of programs with short pointers.
constexpr unsigned kForeignCalls = 0x40000000;
#elif defined(__aarch64__)
constexpr unsigned kArchitecture = AUDIT_ARCH_AARCH64;
constexpr unsigned kForeignCalls = 0xFFFFFFFF;
#endif

// No socket is made, nor what could make one behind the system's calls. The rules stand here as the system takes them:
// a library that makes them needs memory, and where there is none it leaves the network open, or never ends.
void CutNetwork() noexcept
{
#if defined(__x86_64__) || defined(__aarch64__)
    // What a tracer puts in the place of a call that it refuses.
    constexpr unsigned kNoCall = 0xFFFFFFFF;
    static constexpr std::array<sock_filter, 10> kRules{{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, arch)},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 7, kArchitecture},
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        {BPF_JMP | BPF_JEQ | BPF_K, 4, 0, SYS_socket},
        {BPF_JMP | BPF_JEQ | BPF_K, 3, 0, SYS_io_uring_setup},
        {BPF_JMP | BPF_JEQ | BPF_K, 1, 0, kNoCall},
        {BPF_JMP | BPF_JGE | BPF_K, 2, 0, kForeignCalls},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EACCES},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_KILL_PROCESS},
    }};
    // The system only reads them.
    sock_fprog const program{kRules.size(), const_cast<sock_filter*>(kRules.data())};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0);
#endif
}

}  // namespace

ChildLimits ChildLimits::For(std::vector<std::string> const& files, std::optional<unsigned> timeout)
{
    std::uint64_t bytes = 0;
    for (std::string const& file : files)
    {
        std::error_code error;
        std::uint64_t const size = std::filesystem::file_size(file, error);
        if (!error)
            bytes += size;
    }
    constexpr std::uint64_t kMillion = 1'000'000;
    std::uint64_t const wanted = kSeconds + kSecondsPerMillionBytes * (bytes / kMillion) +
                                 kSecondsPerMillionBytes * (bytes % kMillion) / kMillion;
    constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
    return {timeout.value_or(static_cast<unsigned>(std::min(wanted, kMost))), kMemory + kMemoryPerByte * bytes};
}

void ChildLimits::Apply() const noexcept
{
    Limit(RLIMIT_CORE, 0, 0);
    // The signal of the lower limit ends the process; the higher one does where somebody has taken that signal.
    Limit(RLIMIT_CPU, seconds, std::uint64_t{seconds} + 1);
    if (std::uint64_t const had = AddressSpace(); had != 0)
        Limit(RLIMIT_AS, had + memory, had + memory);
    CutNetwork();
}

std::string ChildLimits::TimeText() const
{
    return "after the " + std::to_string(seconds) + " s of processor time that it may take";
}

std::string ChildLimits::MemoryText() const
{
    return "there is not enough memory for it, which may take " + std::to_string(memory >> 20U) + " MiB";
}

std::string ChildLimits::StallText() const
{
    return "after its threads had waited for one another for " + std::to_string(standstill) +
           " s, as they do where they lack memory";
}

}  // namespace KVR
