#include "scene/SceneBox.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "scene/CurvePoints.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneMeshes.h"
#include "scene/ScenePoints.h"

namespace KVR
{

namespace
{

void Include(std::optional<SceneBox>& box, std::vector<double> const& points, Matrix const& place)
{
    for (std::size_t i = 0; i + 2 < points.size(); i += 3)
    {
        std::array<double, 3> placed{};
        for (std::size_t row = 0; row < 3; ++row)
            placed[row] = place[4 * row] * points[i] + place[4 * row + 1] * points[i + 1] +
                          place[4 * row + 2] * points[i + 2] + place[4 * row + 3];
        if (std::all_of(placed.begin(), placed.end(), [](double x) { return std::isfinite(x); }))
            box = SceneBox::Around(box, placed);
    }
}

void Include(std::optional<SceneBox>& box, SceneMesh const& mesh, Matrix const& place)
{
    Include(box, mesh.positions, place);
    Include(box, mesh.edgePoints, place);
}

void Include(std::optional<SceneBox>& box, SceneGeometry const& geometry, Matrix const& place, SceneMeshes& meshes)
{
    if (geometry.mesh)
        Include(box, meshes.Of(*geometry.mesh), place);
    else if (geometry.body)
        Include(box, meshes.Of(*geometry.body), place);
    else if (geometry.curve)
        Include(box, CurvePoints::Of(*geometry.curve, CurvePoints::kForBoxes).points, place);
    else if (geometry.point)
        Include(box, ScenePoints::Of(*geometry.point).points, place);
    else if (geometry.cloud)
        Include(box, ScenePoints::Of(*geometry.cloud).points, place);
}

}  // namespace

SceneBox SceneBox::Around(std::optional<SceneBox> const& box, std::array<double, 3> const& point)
{
    SceneBox around = box.value_or(SceneBox{point, point});
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        around.low[axis] = std::min(around.low[axis], point[axis]);
        around.high[axis] = std::max(around.high[axis], point[axis]);
    }
    return around;
}

std::optional<SceneBox> SceneBox::Of(SceneGeometry const& geometry, Matrix const& place, SceneMeshes& meshes)
{
    std::optional<SceneBox> box;
    Include(box, geometry, place, meshes);
    return box;
}

std::optional<SceneBox> SceneBox::Of(OccurrenceWalk const& occurrence, SceneMeshes& meshes)
{
    std::optional<SceneBox> box;
    OccurrenceState const& state = occurrence.State();
    SceneComponent const& component = occurrence.Component();
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (state.IsVisible(geometry) && !(geometry.body && geometry.hasMesh))
            Include(box, geometry, Product(occurrence.Place(), state.PlaceOf(geometry, component)), meshes);
    }
    return box;
}

}  // namespace KVR
