#pragma once

#include <functional>
#include <optional>
#include <string>

namespace KVR
{

/// How far work is.
struct ProgressReport
{
    /// What is being done, in plain English. A model is read ("reading") and, from STEP and IGES, made a document
    /// ("transferring"), its bodies are meshed ("meshing"), a file or scene is written ("writing"), and what was
    /// written is held against the model ("comparing").
    std::string stage;
    /// How much of the stage is done, from 0 to 1; nothing when that is not known.
    std::optional<double> fraction;
    /// How much of all the work is done, from 0 to 1, by what its stages usually take. It never falls.
    double whole = 0.0;
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
