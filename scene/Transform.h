#pragma once

#include <array>

#include "scene/Export.h"

namespace KVR
{

class Matrix3d;

/// A transform, row by row, for points as columns.
using Matrix = std::array<double, 16>;

constexpr Matrix kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// `left` after `right`.
KVR_SCENE_API Matrix Product(Matrix const& left, Matrix const& right);

/// A scaling by one factor along all axes.
KVR_SCENE_API Matrix Scaling(double factor);

/// The identity for null, and for what cannot place anything: a transform with elements that are no numbers or larger
/// than any place. The last row is always that of the identity.
KVR_SCENE_API Matrix PlaceOf(Matrix3d const* transform);

/// Whether a transform is a turn with a scale along each axis, and perhaps a mirror: its columns are at right angles.
KVR_SCENE_API bool HasRightAngles(Matrix const& transform);

/// A transform as two such, `outer` after `inner`, which every one is.
struct KVR_SCENE_API TwoTransforms
{
    Matrix outer;
    Matrix inner;

    /// `inner` is a turn alone; `outer` stretches, turns, mirrors if the transform does, and moves. Elements are to be
    /// finite.
    static TwoTransforms Of(Matrix const& transform);
};

/// Whether a transform flattens nothing, nor comes so near to it that its axes cannot be told apart.
KVR_SCENE_API bool IsSolid(Matrix const& transform);

/// Whether a transform mirrors.
KVR_SCENE_API bool Mirrors(Matrix const& transform);

}  // namespace KVR
