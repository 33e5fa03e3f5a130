#pragma once

#include <string>
#include <vector>

namespace KVR::Bench
{

/// What a figure should not exceed, and what was measured.
struct Goal
{
    std::string name;
    std::string unit;
    double limit;
    double reached;
};

/// A line per goal, with the limit, the figure and whether it was met.
std::string GoalsText(std::vector<Goal> const& goals);

}  // namespace KVR::Bench
