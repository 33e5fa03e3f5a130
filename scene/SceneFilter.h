#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "scene/Export.h"

namespace KVR
{

/// What of a scene is wanted. Names are ids or labels of components, instances and geometry, or layers by id, label or
/// number, which stand for what is in them. A name that nothing has is a pattern, if it holds "*", for any characters,
/// or "?", for one: all that fits it is meant. A name that leads to nothing makes the scene fail, so that a mistyped
/// one cannot let anything out.
struct SceneFilter
{
    /// So many components may stand in one another; what is deeper is cut.
    static constexpr std::size_t kMostLevels = 1000;

    /// Empty for everything: else what is named, with all above and below it.
    std::vector<std::string> only;
    /// What is named, with all below it, is left out.
    std::vector<std::string> hide;
    std::size_t mostLevels = kMostLevels;
    /// The id or label of a saved view whose members are to be as it has them; empty for none. A name that no view has
    /// makes the scene fail as well.
    std::string view = {};

    /// Whether a name fits a pattern, case included. A character is one of UTF-8.
    KVR_SCENE_API static bool Fits(std::string_view name, std::string_view pattern);
};

/// A scene has nothing of a name that its filter names. What it says is one sentence, with names as they stand.
class KVR_SCENE_API SceneFilterError : public std::runtime_error
{
public:
    /// A name of the filter.
    struct Unmatched
    {
        std::string name;
        /// Whether a layer has it, so that it is the layer that holds nothing that a filter could take or leave out.
        bool isLayer = false;
        /// Names that the scene has, the nearest first; empty for a layer.
        std::vector<std::string> nearest;
    };

    /// Of one name or more.
    explicit SceneFilterError(std::vector<Unmatched> unmatched);

    /// In the order of the filter, with those of `hide` first; never empty.
    std::vector<Unmatched> const& Names() const noexcept { return m_unmatched; }

private:
    std::vector<Unmatched> m_unmatched;
};

}  // namespace KVR
