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

/// Adds the faces of a shape that `idOf` has an id for, by what their piece calls its entity.
template <class IdOf>
void AddFaceIds(ModelFacts& facts, StepShape const& shape, FactPlace const& place, IdOf const& idOf)
{
    for (StepPiece const& piece : shape.pieces)
        if (std::string const id = piece.isFace ? idOf(piece.entity) : std::string(); !id.empty())
        {
            Bulk const there = piece.bulk.At(place);
            facts.Add(kTable_FaceIds, id, {there.area, there.areaMoment[0], there.areaMoment[1], there.areaMoment[2]});
        }
}

}  // namespace KVR::Certification
