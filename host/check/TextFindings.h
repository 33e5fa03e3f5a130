#pragma once

#include <cstddef>

namespace KVR
{

class Output;
struct CheckedScene;

/// How many places of a rule are shown unless all are wanted.
constexpr std::size_t kMostPlaces = 10;

/// How findings are shown to people.
struct TextFindingsOptions
{
    bool inColor = false;
    /// Of each rule; the others are counted.
    std::size_t mostPlaces = kMostPlaces;
};

/// Writes what was found in a scene: by rule, the worst first, each place with its line of the file.
void WriteFindings(CheckedScene const& scene, TextFindingsOptions const& options, Output& out);

}  // namespace KVR
