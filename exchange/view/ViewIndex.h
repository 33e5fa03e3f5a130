#pragma once

#include <cstddef>
#include <vector>

#include "scene/Scene.h"

namespace KVR
{

/// The numbers that components, placements and geometry have in a viewer file. What occurs nowhere, since a filter
/// leaves it out or nothing places it, has none: nothing of it gets into the file.
class ViewIndex
{
public:
    /// The scene must outlive it.
    explicit ViewIndex(Scene const& scene);

    /// Places of the scene's components, in the order of their numbers.
    std::vector<std::size_t> const& Components() const noexcept { return m_components; }
    /// kNoIndex for a component, by its place in the scene, that occurs nowhere.
    std::size_t ComponentAt(std::size_t component) const;
    /// The number of a component's geometry, by its place in that; only of one that occurs.
    std::size_t GeometryAt(std::size_t component, std::size_t place) const
    {
        return m_firstGeometry[component] + place;
    }
    std::size_t GeometryCount() const noexcept { return m_geometryCount; }
    /// The number of a placement within its component; kNoIndex for one that a filter leaves out.
    std::size_t PlacementAt(std::size_t component, std::size_t place) const { return m_placements[component][place]; }

private:
    std::vector<std::size_t> m_components;
    // By the place of the component in the scene.
    std::vector<std::size_t> m_numbers;
    std::vector<std::size_t> m_firstGeometry;
    std::vector<std::vector<std::size_t>> m_placements;
    std::size_t m_geometryCount = 0;
};

}  // namespace KVR
