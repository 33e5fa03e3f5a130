#pragma once

#include <cstddef>

namespace KVR
{

class Output;
struct CheckedScene;

/// How findings are shown to people.
struct TextFindingsOptions
{
    bool inColor = false;
    /// Of each rule; the others are counted.
    std::size_t mostPlaces = 10;
};

/// Writes what was found in a scene: by rule, the worst first, each place with its line of the file.
void WriteFindings(CheckedScene const& scene, TextFindingsOptions const& options, Output& out);

}  // namespace KVR
