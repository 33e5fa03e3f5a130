#pragma once

#include <array>
#include <optional>
#include <span>

#include "scene/Transform.h"

namespace KVR
{

using FitPoint = std::array<double, 3>;

/// A turn and a move, without a mirror or a scale, that takes each point of `from` to within `tolerance` of that of
/// `to` in the same place. Nothing when there is none, for lists of different lengths and for empty ones. Of points on
/// one line one of the turns about it.
std::optional<Matrix> RigidFit(std::span<FitPoint const> from, std::span<FitPoint const> to, double tolerance);

}  // namespace KVR
