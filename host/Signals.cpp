#include "host/Signals.h"

namespace KVR
{

namespace
{

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t noted = 0;

}  // namespace

extern "C" void NoteSignal(int signal)
{
    noted = signal;
}

SignalWatch::SignalWatch()
{
    // Without SA_RESTART: a signal ends a wait.
    struct sigaction action = {};
    action.sa_handler = &NoteSignal;
    for (std::size_t i = 0; i < m_actions.size(); ++i)
    {
        sigaction(kSignals[i], nullptr, &m_actions[i]);
        if (m_actions[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
}

SignalWatch::~SignalWatch()
{
    for (std::size_t i = 0; i < m_actions.size(); ++i)
        sigaction(kSignals[i], &m_actions[i], nullptr);
}

bool IsInterrupted()
{
    return noted != 0;
}

void EndBySignal()
{
    int const signal = noted;
    if (signal == 0)
        return;
    std::signal(signal, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
    std::raise(signal);
}

}  // namespace KVR
