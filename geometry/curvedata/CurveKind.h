#pragma once

#include <cstdint>

namespace KVR
{

/// The kinds of analytic curves, by the record types of a store, in which 0 is a mesh.
enum CurveKind : std::uint32_t
{
    kCurveKind_Line = 1,
    kCurveKind_Ray = 2,
    kCurveKind_Ellipse = 3,
    kCurveKind_Polyline = 4,
    kCurveKind_Composite = 5,
    kCurveKind_Nurbs = 6
};

}  // namespace KVR
