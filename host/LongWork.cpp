#include "host/LongWork.h"

#include <unistd.h>

#include <cstdio>

namespace KVR
{

namespace
{

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t arrived = 0;

extern "C" void NoteSignal(int signal)
{
    arrived = signal;
}

}  // namespace

LongWork::LongWork(bool isShown) : m_isShown(isShown && isatty(STDERR_FILENO) == 1)
{
    arrived = 0;
    // Without SA_RESTART: a signal ends a wait.
    struct sigaction action = {};
    action.sa_handler = &NoteSignal;
    for (std::size_t i = 0; i < m_actions.size(); ++i)
    {
        sigaction(kSignals[i], nullptr, &m_actions[i]);
        // What whoever started the program wants to be ignored stays so.
        if (m_actions[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
}

LongWork::~LongWork()
{
    Show({});
    for (std::size_t i = 0; i < m_actions.size(); ++i)
        sigaction(kSignals[i], &m_actions[i], nullptr);
    if (arrived != 0 && !m_isEnded)
        std::raise(arrived);
}

Progress LongWork::Callback()
{
    return [this](ProgressReport const& report)
    {
        Show(report);
        m_isEnded = m_isEnded || arrived != 0;
        return !m_isEnded;
    };
}

void LongWork::Show(ProgressReport const& report)
{
    int const percent = report.fraction ? static_cast<int>(100.0 * *report.fraction) : -1;
    if (!m_isShown || percent == m_percent)
        return;
    m_percent = percent;
    if (percent >= 0)
        std::fprintf(stderr, "\r%s %3d %%", report.stage.c_str(), percent);
    else
        std::fputs("\r\033[K", stderr);
}

}  // namespace KVR
