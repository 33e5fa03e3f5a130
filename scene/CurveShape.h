#pragma once

#include "scene/Export.h"

class TopoDS_Shape;

namespace KVR
{

class ICurve;

/// Gives `shape` (include <TopoDS_Shape.hxx>) the curve as a shape of Open CASCADE, in the object's own coordinates and
/// unit of length: an edge; a wire of edges that follow each other; a compound of edges that do not; null when there is
/// none. Answers the number of pieces that make no edge: those without an end, without a length, and what Open CASCADE
/// refuses. Throws std::bad_alloc alone.
KVR_SCENE_API unsigned long long MakeCurveShape(ICurve const& curve, TopoDS_Shape& shape);

}  // namespace KVR
