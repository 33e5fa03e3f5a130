#pragma once

#include <array>

#include "exchange/export/SceneModel.h"

namespace KVR
{

/// Whether a transform is a turn with a scale along each axis, and perhaps a mirror: its columns are at right angles.
bool HasRightAngles(Matrix const& transform);

/// A transform as two such, `outer` after `inner`, which every one is.
struct TwoTransforms
{
    Matrix outer;
    Matrix inner;

    static TwoTransforms Of(Matrix const& transform);
};

/// Whether a transform flattens nothing, nor comes so near to it that its axes cannot be told apart.
bool IsSolid(Matrix const& transform);

/// Whether a transform mirrors.
bool Mirrors(Matrix const& transform);

}  // namespace KVR
