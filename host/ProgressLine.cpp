#include "host/ProgressLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace KVR
{

namespace
{

constexpr std::size_t kBarColumns = 30;
// The first part of the work tells little of how long all of it takes.
constexpr double kLeastDone = 0.05;
constexpr double kLeastSeconds = 1.0;
// How much of a new estimate counts at least beside those before it: more towards the end, where it is exact.
constexpr double kLeastShare = 0.3;

}  // namespace

std::string ProgressLine::Text(ProgressReport const& report, double seconds, std::size_t columns)
{
    double const done = std::clamp(report.whole, m_done, 1.0);
    if (done > m_done && done >= kLeastDone && seconds >= kLeastSeconds)
    {
        double const estimate = seconds / done;
        m_allSeconds = m_allSeconds > 0.0 ? std::lerp(m_allSeconds, estimate, std::max(done, kLeastShare)) : estimate;
    }
    m_done = done;
    auto const filled = static_cast<std::size_t>(done * static_cast<double>(kBarColumns));
    std::string const percent = fmt::format("{:3}%", static_cast<int>(100.0 * done));
    std::string line = fmt::format("{:<12} [{:<{}}] {}", report.stage, std::string(filled, '#'), kBarColumns, percent);
    if (m_allSeconds > seconds)
    {
        auto const left = static_cast<long long>(std::ceil(m_allSeconds - seconds));
        line += fmt::format("  {}:{:02} left", left / 60, left % 60);
    }
    return line.size() <= columns ? line : (report.stage + ' ' + percent).substr(0, columns);
}

}  // namespace KVR
