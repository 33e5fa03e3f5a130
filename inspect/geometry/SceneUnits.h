#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace KVR
{

class Scene;

/// A component that states another unit of length than an assembly that places it. Indices are those of the scene's
/// components.
struct UnitChange
{
    std::size_t above = 0;
    std::size_t below = 0;

    /// Each pair once, in the order of the scene. Files state no unit of their numbers.
    static std::vector<UnitChange> Of(Scene const& scene);
};

/// A scene in metres, or a unit of that order, all of whose parts are so large that millimetres were meant.
struct GiantParts
{
    /// Parts with geometry.
    std::size_t count = 0;
    /// The smallest of them, and how long it is in metres.
    std::size_t smallest = 0;
    double length = 0.0;

    /// No part is smaller than this, in metres: there is no bolt or pin in a plant or ship either, but some part is.
    static constexpr double kSmallest = 1.5;
    /// The unit is at least so long, in metres.
    static constexpr double kShortestUnit = 0.1;

    static std::optional<GiantParts> Of(Scene const& scene);
};

}  // namespace KVR
