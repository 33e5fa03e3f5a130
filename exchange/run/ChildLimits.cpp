#include "exchange/run/ChildLimits.h"

#include <seccomp.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

// No socket is made, nor what could make one behind the system's calls.
void CutNetwork() noexcept
{
    scmp_filter_ctx const filter = seccomp_init(SCMP_ACT_ALLOW);
    if (!filter)
        return;
    for (int const call : {SCMP_SYS(socket), SCMP_SYS(io_uring_setup)})
        seccomp_rule_add(filter, SCMP_ACT_ERRNO(EACCES), call, 0);
    seccomp_load(filter);
    seccomp_release(filter);
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
