#pragma once

#include <string>
#include <vector>

namespace KVR::Bench
{

/// The medians of the rounds over one scene.
struct SizeFigures
{
    unsigned instances = 0;
    double fileBytes = 0.0;
    double parseSeconds = 0.0;
    double beginSeconds = 0.0;
    /// BeginProcess over bare parse, the median of the rounds' ratios.
    double beginRatio = 0.0;
    double endSeconds = 0.0;
    double loadNanoseconds = 0.0;
    double parseBytesPerInstance = 0.0;
    /// What the producer needs beyond the bare document.
    double extraBytesPerInstance = 0.0;
    /// What is resident when the scene was read.
    double keptBytesPerInstance = 0.0;
};

/// The table, and the goals with what was reached.
std::string TableText(std::vector<SizeFigures> const& sizes);

/// The same as JSON.
std::string JsonText(std::vector<SizeFigures> const& sizes);

}  // namespace KVR::Bench
