#pragma once

#include <vector>

#include "authoring/CurveRecord.h"

class TopoDS_Shape;

namespace KVR
{

/// The edges of the drawing of an annotation as polylines; edges that follow one another are one.
std::vector<Authoring::PolylineRecord> DrawnLines(TopoDS_Shape const& drawing);

}  // namespace KVR
