#pragma once

#include <TopoDS_Shape.hxx>

#include "scene/Export.h"

namespace KVR
{

class ICurve;

/// A curve object as a shape of Open CASCADE, in the object's own coordinates and length unit.
struct KVR_SCENE_API CurveShape
{
    /// An edge; a wire of edges that follow each other; or a compound of edges that do not. Null when there is none.
    TopoDS_Shape shape;
    /// The pieces that make no edge: those without an end, without a length, and what Open CASCADE refuses.
    unsigned long long missing = 0;

    static CurveShape Of(ICurve const& curve);
};

}  // namespace KVR
