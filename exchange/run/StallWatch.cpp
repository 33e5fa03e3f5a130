#include "exchange/run/StallWatch.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "output/Descriptor.h"
#include "output/FolderNames.h"

namespace KVR
{

namespace
{

// By all its threads together; nothing for a process that is gone.
std::optional<std::chrono::nanoseconds> ProcessorTime(pid_t process) noexcept
{
    clockid_t clock = {};
    struct timespec time = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return {};
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

using Text = std::array<char, 512>;

// The beginning of a file in a folder; empty for one that cannot be read.
Text TextOf(int folder, char const* name, char const* file) noexcept
{
    Text text{};
    std::array<char, 64> path{};
    std::snprintf(path.data(), path.size(), "%s/%s", name, file);
    Descriptor const descriptor(openat(folder, path.data(), O_RDONLY | O_CLOEXEC));
    if (descriptor < 0 || read(descriptor, text.data(), text.size() - 1) < 0)
        text.front() = '\0';
    return text;
}

// The letter behind the name, which stands in brackets and may have brackets in it.
char StateOf(Text const& stat) noexcept
{
    char const* const bracket = std::strrchr(stat.data(), ')');
    return bracket && bracket[1] == ' ' ? bracket[2] : '?';
}

// Of a thread that sleeps: until another wakes it?
bool WaitsForThread(Text const& call) noexcept
{
    char* end = nullptr;
    long const number = std::strtol(call.data(), &end, 10);
    return end != call.data() && number == SYS_futex;
}

}  // namespace

bool WaitsForItself(pid_t process) noexcept
{
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/proc/%ld/task", static_cast<long>(process));
    Descriptor const folder(open(path.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FolderNames threads(folder);
    bool isAny = false;
    while (char const* const thread = threads.Next())
    {
        char const state = StateOf(TextOf(folder, thread, "stat"));
        // A thread that has ended.
        if (state == 'Z' || state == 'X')
            continue;
        if (state != 'S' || !WaitsForThread(TextOf(folder, thread, "syscall")))
            return false;
        isAny = true;
    }
    return isAny && threads.Error() == 0;
}

bool StallWatch::HasStalled() noexcept
{
    auto const now = std::chrono::steady_clock::now();
    auto const taken = ProcessorTime(m_process);
    if (!taken || taken != m_taken || !WaitsForItself(m_process))
    {
        m_taken = taken;
        m_since = now;
        return false;
    }
    return now - m_since >= m_limit;
}

}  // namespace KVR
