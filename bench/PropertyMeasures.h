#pragma once

#include <filesystem>

namespace KVR::Bench
{

/// A scene with a property file beside it.
struct PropertyScene
{
    std::filesystem::path scene;
    std::filesystem::path properties;
    unsigned entries = 0;
    /// Whether the properties belong to objects of the scene, or to none.
    bool isKept = true;
};

/// Writes a scene of a thousand instances, and a file of so many properties, five types in turn, for them or for
/// objects that the scene lacks.
void WritePropertyScene(PropertyScene const& scene);

/// What one round measured: a bare parse of the property file and the producer, each in a fresh process.
struct PropertyRound
{
    double parseSeconds = 0.0;
    double beginSeconds = 0.0;
    /// Bytes in use at the end beyond those at the start, in what keeps the properties.
    double keptBytes = 0.0;
    /// What the process's peak of resident memory grew by beyond the bytes kept.
    double extraBytes = 0.0;
};

/// Throws std::runtime_error when a process fails or the scene answers another number of properties.
PropertyRound MeasureProperties(PropertyScene const& scene, PropertyScene const& smallest);

}  // namespace KVR::Bench
