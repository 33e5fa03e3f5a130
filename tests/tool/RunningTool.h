#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace KVR::Test
{

/// A run of the program kvr that can be watched and ended in its midst. What it prints is lost, unless it has a
/// terminal for standard error. One that still runs is killed with the object. No wait lasts more than a minute.
class RunningTool
{
public:
    enum class StandardError
    {
        kNowhere,
        kTerminal
    };
    /// Signals that are to be ignored are so from its start on.
    explicit RunningTool(std::vector<std::string> const& arguments, std::vector<int> const& ignored = {},
                         StandardError standardError = StandardError::kNowhere);
    ~RunningTool();
    RunningTool(RunningTool const&) = delete;
    RunningTool& operator=(RunningTool const&) = delete;

    /// Waits until that is so; false when it never was, or the program and all its children ended before.
    bool WaitFor(std::function<bool()> const& condition);
    void Send(int signal) const;
    /// Waits for its end; the state is that of waitpid.
    int Wait();
    /// Waits until neither it nor any process that it made is there; false when one is there for too long.
    bool AllEnd();
    /// What it has written on its terminal up to its end.
    std::string ReadTerminal() const;

private:
    pid_t m_process = -1;
    /// The end of a pipe of which it and all its children hold the other one.
    int m_alive = -1;
    int m_terminal = -1;
};

}  // namespace KVR::Test
