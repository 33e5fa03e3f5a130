#include "host/LongWork.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace KVR
{

namespace
{

// The last column stays free: a terminal may go on to the next line when it is written to.
std::size_t ColumnsOfTerminal()
{
    constexpr std::size_t kUsual = 80;
    struct winsize size = {};
    bool const isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return (isKnown ? size.ws_col : kUsual) - 1;
}

}  // namespace

LongWork::LongWork(bool isShown) : m_isShown(isShown && isatty(STDERR_FILENO) == 1) {}

LongWork::~LongWork()
{
    if (!m_shown.empty())
        std::fputs("\r\033[K", stderr);
}

Progress LongWork::Callback()
{
    return [this](ProgressReport const& report)
    {
        Show(report);
        return !IsInterrupted();
    };
}

void LongWork::Show(ProgressReport const& report)
{
    if (!m_isShown)
        return;
    std::chrono::duration<double> const passed = std::chrono::steady_clock::now() - m_start;
    std::string line = m_line.Text(report, passed.count(), ColumnsOfTerminal());
    if (line == m_shown)
        return;
    std::fputs(('\r' + line + "\033[K").c_str(), stderr);
    m_shown = std::move(line);
}

}  // namespace KVR
