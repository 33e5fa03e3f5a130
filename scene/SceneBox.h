#pragma once

#include <array>
#include <optional>

#include "scene/Export.h"
#include "scene/Transform.h"

namespace KVR
{

class OccurrenceWalk;
class SceneMeshes;
struct SceneGeometry;

/// The smallest box around something, parallel to the axes.
struct KVR_SCENE_API SceneBox
{
    std::array<double, 3> low;
    std::array<double, 3> high;

    /// The box around a box, if there is one, and a point.
    static SceneBox Around(std::optional<SceneBox> const& box, std::array<double, 3> const& point);

    /// The box around geometry after a transform from its own coordinates: exact for meshes, points and clouds, right
    /// to a millionth of their size for curves; for a body that of its triangles. Nothing for geometry without points.
    static std::optional<SceneBox> Of(SceneGeometry const& geometry, Matrix const& place, SceneMeshes& meshes);

    /// The box around what the walk's current occurrence shows itself, in the root's coordinates and the scene's unit:
    /// hidden geometry and what is below it do not count, and neither does a body that a mesh stands for. Nothing for
    /// an occurrence that shows nothing.
    static std::optional<SceneBox> Of(OccurrenceWalk const& occurrence, SceneMeshes& meshes);
};

}  // namespace KVR
