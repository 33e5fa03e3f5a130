#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace KVR
{

/// What of a scene is wanted. Names are ids or labels of components, instances and geometry, or layers by id, label or
/// number, which stand for what is in them.
struct SceneFilter
{
    /// So many components may stand in one another; what is deeper is cut.
    static constexpr std::size_t kMostLevels = 1000;

    /// Empty for everything: else what is named, with all above and below it.
    std::vector<std::string> only;
    /// What is named, with all below it, is left out.
    std::vector<std::string> hide;
    std::size_t mostLevels = kMostLevels;
};

}  // namespace KVR
