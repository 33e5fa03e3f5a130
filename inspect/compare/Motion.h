#pragma once

#include <optional>

#include "scene/Transform.h"

namespace KVR
{

/// How a place became another one.
struct Motion
{
    /// How far the origin went, in metres.
    double distance = 0.0;
    /// By how much it turned, in radians; nothing where it was stretched or mirrored as well, or is not at right
    /// angles.
    std::optional<double> angle;

    /// Each place with the length of its unit in metres.
    static Motion Of(Matrix const& from, double metres, Matrix const& to, double otherMetres);
};

}  // namespace KVR
