#pragma once

#include <cstddef>
#include <string>

#include "exchange/Progress.h"

namespace KVR
{

/// How far work is, as one line for a terminal: the stage, a bar over the whole work, and the time that is left. The
/// bar never goes back.
class ProgressLine
{
public:
    /// The line of so many columns at most, when the work has lasted so many seconds.
    std::string Text(ProgressReport const& report, double seconds, std::size_t columns);

private:
    double m_done = 0.0;
    /// How long all of it will take, as it looked when the bar moved last; 0 when that is not known.
    double m_allSeconds = 0.0;
};

}  // namespace KVR
