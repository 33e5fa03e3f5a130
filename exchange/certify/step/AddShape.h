#pragma once

#include "exchange/certify/ModelFacts.h"
#include "exchange/certify/step/StepShapes.h"

namespace KVR::Certification
{

/// Adds a shape at its place to what an occurrence holds of bodies.
inline void AddShape(ModelFacts::Occurrence& occurrence, StepShape const& shape, FactPlace const& place)
{
    occurrence.solids += shape.solids;
    occurrence.faces += shape.faces;
    occurrence.bodies.Add(shape.bulk.At(place));
    for (FactPoint const& corner : shape.corners)
        occurrence.bodies.AddPoint(place.Of(corner));
}

}  // namespace KVR::Certification
