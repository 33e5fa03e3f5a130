#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "exchange/Progress.h"
#include "exchange/run/ChildLimits.h"

namespace KVR
{

/// How a child process tells whoever started it what is going on. Whoever is gone ends the process.
class ChildVoice
{
public:
    /// Writes to a pipe, which it does not own.
    explicit ChildVoice(int pipe) noexcept : m_pipe(pipe) {}

    void Progress(ProgressReport const& report) const;
    void Remark(std::string const& sentence) const;
    /// What is worked on from here on; an empty text for nothing in particular.
    void Subject(std::string const& name) const;
    void Failure(std::string const& cause) const;
    void Result(std::string const& answer) const;

private:
    void Write(std::string const& record) const;

    int m_pipe;
};

/// How work in a child process ended.
struct ChildResult
{
    /// What the work answered; nothing when it failed or was cancelled.
    std::optional<std::string> answer;
    /// What it remarked.
    std::vector<std::string> remarks;
    /// Why it failed: what it threw; nothing when its process ended before that, or it did not fail.
    std::optional<std::string> failure;
    /// The signal that ended the process, 0 for none.
    int signal = 0;
    /// Whether the callback did not want it to go on; the process is gone then.
    bool isCancelled = false;
    /// Whether memory ran out, wherever in its work, also where that went on; `failure` says so.
    bool isOutOfMemory = false;
    /// Whether it stood still for too long and was ended, see ChildLimits.
    bool hasStalled = false;
    /// What it worked on when it ended; empty for nothing in particular.
    std::string subject;
    /// What it was held to.
    ChildLimits limits;

    /// Whether it took all the processor time that it had.
    bool IsOutOfTime() const noexcept;
    /// How a process ended that told of no failure: "(Segmentation fault)", "(early)", after which processor time, or
    /// after which standstill.
    std::string EndText() const;
};

/// Work that a child process does meanwhile, see RunInChild. It ends with the object.
class ChildWork
{
public:
    /// Throws std::system_error when there can be no child.
    explicit ChildWork(std::function<std::string(ChildVoice const&)> const& work, ChildLimits const& limits = {});
    ~ChildWork();
    ChildWork(ChildWork&&) noexcept;
    ChildWork& operator=(ChildWork&&) noexcept;

    /// Waits for its end, which may be called once. Throws what the callback throws; the child is gone then.
    ChildResult Finish(Progress const& progress);

private:
    class Child;
    std::unique_ptr<Child> m_child;
    ChildLimits m_limits;
};

/// Does work in a child process, where it may crash and is held to limits: what it answers, remarks and throws comes
/// back. The process ends with that of the caller. The callback is asked a few times a second, and when a signal
/// arrives. Throws std::system_error when there can be no child, and what the callback throws; the child is gone then.
ChildResult RunInChild(std::function<std::string(ChildVoice const&)> const& work, Progress const& progress,
                       ChildLimits const& limits = {});

}  // namespace KVR
