#include "scene/ScenePoints.h"

#include <cmath>
#include <limits>

#include "framework/api/IPoint.h"
#include "framework/api/IPointCloud.h"

namespace KVR
{

namespace
{

template <class Object>
ScenePoints Begin(Object const& object)
{
    ScenePoints result;
    UnitTypeEnum unit = kUnitType_Unknown;
    if (object.LengthUnit(unit) == kIsValueSpecified_Yes)
        result.lengthUnit = unit;
    return result;
}

void Add(ScenePoints& target, double x, double y, double z)
{
    // Graphics formats hold floats.
    constexpr double kMost = std::numeric_limits<float>::max();
    if (std::abs(x) <= kMost && std::abs(y) <= kMost && std::abs(z) <= kMost)
        target.points.insert(target.points.end(), {x, y, z});
    else
        ++target.broken;
}

}  // namespace

ScenePoints ScenePoints::Of(IPoint const& point)
{
    ScenePoints result = Begin(point);
    Add(result, point.X(), point.Y(), point.Z());
    return result;
}

ScenePoints ScenePoints::Of(IPointCloud const& cloud)
{
    ScenePoints result = Begin(cloud);
    std::size_t const count = cloud.PointCount();
    result.points.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i)
    {
        // What the cloud does not tell stays without a number.
        double x = std::numeric_limits<double>::quiet_NaN();
        double y = x;
        double z = x;
        cloud.Point(i, &x, &y, &z);
        Add(result, x, y, z);
    }
    return result;
}

}  // namespace KVR
