#pragma once

#include <array>
#include <csignal>

namespace KVR
{

/// While it lives, a signal by which the user ends the program (SIGINT, SIGTERM, SIGHUP) is noted and does no more: the
/// work that goes on has to ask for it, and cleans up. What whoever started the program wants to be ignored stays so.
class SignalWatch
{
public:
    SignalWatch();
    ~SignalWatch();
    SignalWatch(SignalWatch const&) = delete;
    SignalWatch& operator=(SignalWatch const&) = delete;

private:
    std::array<struct sigaction, 3> m_actions{};
};

/// Whether a signal was noted.
bool IsInterrupted();

/// Notes that the program is to end as if nobody had held the signal back.
extern "C" void NoteSignal(int signal);

/// Ends the program by the signal that was noted, so that whoever waits for it sees that: a loop of a shell ends, too.
/// Returns when there was none.
void EndBySignal();

}  // namespace KVR
