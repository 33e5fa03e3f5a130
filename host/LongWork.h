#pragma once

#include <array>
#include <csignal>

#include "exchange/Progress.h"
#include "host/Command.h"

namespace KVR
{

/// What the program does about work that takes long, while it lives: shows on standard error how far the reading of a
/// model is, on one line that it clears in the end, and ends the work when the user ends the program (SIGINT, SIGTERM,
/// SIGHUP). A signal that the work was not told of ends the program afterwards.
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
    int m_percent = -1;
    bool m_isEnded = false;
    std::array<struct sigaction, 3> m_actions{};
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
    bool const isCancelled = result.outcome == Outcome::kCancelled;
    Complain(isCancelled ? interrupted : result.failure);
    return isCancelled ? kExit_Interrupted : kExit_Failed;
}

}  // namespace KVR
