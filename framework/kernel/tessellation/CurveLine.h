#pragma once

#include <vector>

#include "framework/kernel/CurveTolerance.h"
#include "framework/kernel/Export.h"

class Adaptor3d_Curve;
class TopoDS_Edge;

namespace KVR
{

/// The points of the polyline of a curve of Open CASCADE, three numbers for each, in the direction in which its
/// parameter grows. False, with points of no meaning, for one without an end or with numbers that no float could hold.
/// The first throws what Open CASCADE throws.
KVR_KERNEL_API bool PointsOn(Adaptor3d_Curve const& curve, CurveTolerance const& tolerance,
                             std::vector<double>& points);
/// The same of an edge, whatever its orientation; false also for one without a curve, such as the tip of a cone.
KVR_KERNEL_API bool PointsOn(TopoDS_Edge const& edge, CurveTolerance const& tolerance, std::vector<double>& points);

}  // namespace KVR
