#pragma once

#include <array>

#include "host/export/SceneModel.h"
#include "host/export/Triangulation.h"

namespace KVR
{

/// A transform with a last row of 0 0 0 1. One with elements that are no numbers is the identity.
Matrix Sound(Matrix const& transform);

/// What a component's unit is in that of another.
Matrix UnitChange(ModelComponent const& from, ModelComponent const& into);

/// From a piece of geometry to its component: its own transform, and the change of its unit when it states another one.
Matrix GeometryPlace(ModelGeometry const& geometry, ModelComponent const& component);

/// Whether the transform turns, moves, and scales along its own axes alone, without flattening anything: no shear.
bool IsDecomposable(Matrix const& transform);

/// Whether the transform turns what is on the left to the right.
bool IsMirrored(Matrix const& transform);

Triple PlacedPoint(Matrix const& transform, Triple const& point);

/// Places normals so that they stay at right angles to surfaces.
class NormalPlacing
{
public:
    explicit NormalPlacing(Matrix const& transform);

    /// Of length 1; (0, 0, 1) where the transform leaves none.
    Triple Placed(Triple const& normal) const;

private:
    std::array<double, 9> m_cofactors;
};

}  // namespace KVR
