#pragma once

#include <chrono>
#include <string>

#include "exchange/Progress.h"
#include "host/Command.h"
#include "host/ProgressLine.h"
#include "host/Signals.h"

namespace KVR
{

/// What the program does about work that takes long, while it lives: shows on standard error how far it is, on one line
/// that it clears in the end, if that is a terminal; and ends the work when the user ends the program. The program ends
/// by that signal when everything has been cleaned up.
class LongWork
{
public:
    explicit LongWork(bool isShown);
    ~LongWork();
    LongWork(LongWork const&) = delete;
    LongWork& operator=(LongWork const&) = delete;

    /// For the library; it refers to this.
    Progress Callback();

private:
    void Show(ProgressReport const& report);

    bool m_isShown;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    ProgressLine m_line;
    std::string m_shown;
    SignalWatch m_signals;
};

/// The result of work that takes the callback.
template <class Work>
auto Watched(bool isShown, Work const& work)
{
    LongWork watch(isShown);
    return work(watch.Callback());
}

/// Says why there is no result, and answers the program's exit status.
template <class Result>
ExitStatus ComplainOf(Result const& result, char const* interrupted = "interrupted; nothing was written")
{
    Complain(result.outcome == Outcome::kCancelled ? interrupted : result.failure);
    return kExit_Failed;
}

}  // namespace KVR
