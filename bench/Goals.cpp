#include "bench/Goals.h"

#include <fmt/format.h>
#include <iterator>

namespace KVR::Bench
{

std::string GoalsText(std::vector<Goal> const& goals)
{
    std::string text;
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "\n{:<56} {:>9} {:>9}\n", "goal", "at most", "measured");
    for (Goal const& goal : goals)
        fmt::format_to(out, "{:<56} {:>9} {:>9}  {}\n", goal.name, fmt::format("{:g}{}", goal.limit, goal.unit),
                       fmt::format("{:.{}f}{}", goal.reached, goal.unit.empty() ? 2 : 0, goal.unit),
                       goal.reached <= goal.limit ? "met" : "missed");
    return text;
}

}  // namespace KVR::Bench
