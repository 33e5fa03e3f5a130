#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace KVR
{

/// What of a scene that was read is wanted, by occurrences: their places in an OccurrenceWalk over all of it, in which
/// the root's is 0. Lists are ascending; places that the walk does not have mean nothing.
struct SceneSelection
{
    /// Those that are wanted with all above and below them; with `onlyNames` empty, too, everything is.
    std::vector<std::size_t> only;
    /// Names as of SceneFilter::only, which are wanted as well.
    std::vector<std::string> onlyNames = {};
    /// Those that are left out with all below them.
    std::vector<std::size_t> hide = {};
};

}  // namespace KVR
