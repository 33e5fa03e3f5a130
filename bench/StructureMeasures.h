#pragma once

#include <filesystem>
#include <string>

namespace KVR::Bench
{

/// What one round over a scene measured: the bare parse and the producer, each in a fresh process, one after the other.
struct Round
{
    double parseSeconds = 0.0;
    /// What the process's peak of resident memory grew by, in bytes; the same below.
    double parseMemory = 0.0;
    double beginSeconds = 0.0;
    double beginMemory = 0.0;
    /// What is resident when the scene was read, beyond what was before, in bytes.
    double keptMemory = 0.0;
    double loadNanoseconds = 0.0;
    double endSeconds = 0.0;
};

/// Scenes of the generator. The smallest is read first in each process, unmeasured.
struct Scenes
{
    std::filesystem::path smallest;
    std::filesystem::path measured;
};

/// Throws std::runtime_error when a process fails or finds another number of instances.
Round MeasureRound(Scenes const& scenes, unsigned instances);

/// The same without loads, for a scene of any kind that must serve an object of that id.
Round MeasureRound(Scenes const& scenes, std::string const& id);

}  // namespace KVR::Bench
