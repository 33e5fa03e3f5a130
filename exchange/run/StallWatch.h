#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>

namespace KVR
{

/// Whether all threads of a process wait for one another: each sleeps until another thread of it wakes it (a futex). A
/// thread that computes, or could if it had a processor, that waits for a file, a pipe or a time, or that is stopped,
/// is no such thread. False also for a process of which the system does not tell.
bool WaitsForItself(pid_t process) noexcept;

/// Watches a child process for standing still: threads that wait for one another for ever take no processor time, so
/// that no limit of that ends them. Open CASCADE's do so where memory runs out as they begin.
class StallWatch
{
public:
    StallWatch(pid_t process, std::chrono::seconds limit) noexcept : m_process(process), m_limit(limit) {}

    /// To be asked again and again: whether it took no processor time at all for as long as the limit, and waits for
    /// itself.
    bool HasStalled() noexcept;

private:
    pid_t m_process;
    std::chrono::seconds m_limit;
    std::optional<std::chrono::nanoseconds> m_taken;
    std::chrono::steady_clock::time_point m_since;
};

}  // namespace KVR
