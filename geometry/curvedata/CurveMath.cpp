#include "geometry/curvedata/CurveMath.h"

#include <cmath>

namespace KVR
{

DataReturnCodeEnum CurveMath::Answer(CurveVector const& value, Position& point)
{
    if (!std::isfinite(value.x) || !std::isfinite(value.y) || !std::isfinite(value.z))
        return kDataReturnCode_NotAvailable;
    point.Set(value.x, value.y, value.z);
    return kDataReturnCode_Ok;
}

bool CurveMath::ParameterOnLine(CurveVector const& root, CurveVector const& direction, Position const& point,
                                double& parameter)
{
    double const along = Dot(VectorOf(point) - root, direction) / Dot(direction, direction);
    if (!std::isfinite(along))
        return false;
    parameter = along;
    return true;
}

}  // namespace KVR
