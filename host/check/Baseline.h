#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

namespace KVR
{

struct CheckedScene;

/// Findings that are known: those of an earlier check that was printed as JSON.
class Baseline
{
public:
    /// Without any.
    Baseline() = default;
    /// Throws ArgumentError for a file that cannot be read or is no such JSON.
    explicit Baseline(std::string const& path);

    /// Takes the known findings out of a scene's, each as often as it was known.
    void TakeKnown(CheckedScene& scene);

private:
    std::unordered_map<std::string, std::size_t> m_counts;
};

}  // namespace KVR
