#pragma once

#include <functional>
#include <optional>
#include <string>

namespace KVR
{

/// How far work is.
struct ProgressReport
{
    /// What is being done, in plain English: "reading", "writing".
    std::string stage;
    /// How much of the stage is done, from 0 to 1; nothing when that is not known.
    std::optional<double> fraction;
};

/// Is told how far work is, and answers whether to go on. It is called in the caller's process and thread: at the start
/// of each stage, whenever the fraction has changed by a percent, when a signal arrives, and a few times a second while
/// a child process is at work. What it throws ends the work, leaves no file behind, and comes out of the operation.
/// An empty one is nobody: the work goes on to its end.
using Progress = std::function<bool(ProgressReport const&)>;

/// How an operation ended.
enum class Outcome
{
    kDone,
    kFailed,
    /// The callback did not want it to go on.
    kCancelled
};

}  // namespace KVR
