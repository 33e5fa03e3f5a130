#pragma once

#include "exchange/export/OccurrenceState.h"
#include "exchange/export/SceneModel.h"

namespace KVR
{

/// A scaling by one factor along all axes.
Matrix Scaling(double factor);

/// From geometry to its component: the transform that holds for the occurrence, and the change of units where the
/// geometry states a unit of its own.
Matrix PlaceOf(ModelGeometry const& geometry, ModelComponent const& component, OccurrenceState const& state);

}  // namespace KVR
