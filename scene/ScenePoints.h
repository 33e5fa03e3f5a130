#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "framework/api/Enums.h"
#include "scene/Export.h"

namespace KVR
{

class IPoint;
class IPointCloud;

/// The points of a cloud, or the one of a point object, in the object's own coordinates and before its transform.
struct KVR_SCENE_API ScenePoints
{
    /// The one point of a point object, or those of a cloud in its order. They are copied: nothing of them belongs to
    /// the producer. Throws what the object throws.
    static ScenePoints Of(IPoint const& point);
    static ScenePoints Of(IPointCloud const& cloud);

    /// The number of points, without those that are left out.
    std::size_t Count() const noexcept { return points.size() / 3; }

    /// Three for each point. No number is greater than fits a float.
    std::vector<double> points;
    /// The points whose numbers make no sense. They are left out.
    std::size_t broken = 0;
    /// Nothing when the object states no unit of length; then that of its component holds.
    std::optional<UnitTypeEnum> lengthUnit;
};

}  // namespace KVR
