#pragma once

#include <optional>

namespace KVR
{

/// What the user wants to see of the product tree.
struct TreeOptions
{
    /// Levels below the root that are shown; all when not given.
    std::optional<unsigned long long> depth;
    bool json = false;
    bool color = false;
    /// The colours of the styles that objects name; as blocks of colour, or else as text.
    bool styles = false;
    bool colorBlocks = false;
    /// Lines after which the tree ends.
    unsigned long long maxOccurrences = 10'000'000;
};

}  // namespace KVR
