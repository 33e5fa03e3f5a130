#pragma once

#include <vector>

#include "authoring/CurveRecord.h"

class Bnd_Box;
class TopoDS_Shape;

namespace KVR
{

/// The edges of the drawing of an annotation: whole circles as such, all else as polylines, of which edges that follow
/// one another are one.
std::vector<Authoring::CurveRecord> DrawnLines(TopoDS_Shape const& drawing);

/// The box around one of these.
Bnd_Box BoxOf(Authoring::CurveRecord const& line);

}  // namespace KVR
