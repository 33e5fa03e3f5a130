#pragma once

#include <optional>

#include "scene/SceneBox.h"

namespace KVR
{

struct SceneGeometry;

/// The box around a mesh or a body, in metres and in the coordinates of its component.
struct MetricBox
{
    SceneBox box;

    double Diagonal() const;

    /// Around all vertices of a mesh. That of a body may be larger than it unless it is to be exact, which takes time.
    /// Nothing for other geometry, and for what has no extent that can be told.
    static std::optional<MetricBox> Of(SceneGeometry const& geometry, bool isExact = false);
};

}  // namespace KVR
