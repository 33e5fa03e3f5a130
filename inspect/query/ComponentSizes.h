#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>

#include "scene/SceneBox.h"
#include "scene/Transform.h"

namespace KVR
{

class IObject;
class Scene;
struct SceneComponent;
struct SceneGeometry;

/// The factor, or 1 for one that differs from it by rounding alone.
double UnlessNear1(double factor);

/// By how much a transform makes volumes greater or smaller; 1 for what turns, moves and mirrors alone.
double VolumeScale(Matrix const& transform);

/// Boxes, areas, volumes and masses of components with all that is below them, as they stand by themselves: shown or
/// not, and without what assemblies above say otherwise. Each is computed when it is first asked for, and once. The
/// scene must outlive it.
class ComponentSizes
{
public:
    explicit ComponentSizes(Scene const& scene) : m_scene(scene) {}

    /// What a component and all below it come to. Areas and volumes are in the unit of the component.
    struct Measures
    {
        /// Of surfaces: of faces of bodies, and of triangles of meshes that stand for no body. Nothing without any.
        std::optional<double> area = std::nullopt;
        /// Of solids, and of such meshes that are closed. Nothing without any.
        std::optional<double> volume = std::nullopt;
        /// In kilograms: what the component states, or its volume by its density, and the masses of what is below it.
        /// Nothing where neither is known of anything.
        std::optional<double> mass = std::nullopt;
    };

    /// In the component's coordinates and unit. That of what it places is around the box of that, so that it may be too
    /// large where that is turned by other than right angles. Nothing where there is nothing to put a box around.
    std::optional<SceneBox> const& BoxOf(std::size_t component);
    Measures const& MeasuresOf(std::size_t component);

private:
    std::optional<SceneBox> BoxAround(SceneComponent const& component) const;
    Measures MeasuresIn(SceneComponent const& component);
    Measures const& MeasuresOf(SceneGeometry const& geometry);

    Scene const& m_scene;
    std::unordered_map<std::size_t, std::optional<SceneBox>> m_boxes;
    std::unordered_map<std::size_t, Measures> m_measures;
    /// Geometry that several components list is measured once.
    std::unordered_map<IObject const*, Measures> m_ofGeometry;
};

}  // namespace KVR
