#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "scene/Export.h"
#include "scene/OccurrenceState.h"
#include "scene/Scene.h"

namespace KVR
{

/// Goes through all occurrences of components in a scene: depth first, each before what is below it, in the scene's
/// order. It takes memory in proportion to the depth alone, and no stack. The scene must outlive it and stay as it is.
///
///     for (OccurrenceWalk walk(scene); walk.Next();)
///         Draw(walk.Component(), walk.Place());
class KVR_SCENE_API OccurrenceWalk
{
public:
    enum class Mode
    {
        kAll,
        /// Hidden ones, and all below them, are left out.
        kVisible
    };
    explicit OccurrenceWalk(Scene const& scene, Mode mode = Mode::kAll);
    /// The same for what a component says of itself and of what is below it: as if it, one of the scene's, were the
    /// root. Places are in the scene's unit all the same.
    OccurrenceWalk(Scene const& scene, std::size_t component, Mode mode = Mode::kAll);

    /// Goes to the first occurrence, which is that of the root, or on to the next one; false when there are no more.
    /// The other operations are for occurrences alone: they must not be called before the first call or after false.
    /// What they answer by reference is valid until the next call.
    bool Next();
    /// Leaves out what is below the current occurrence.
    void SkipBelow() noexcept;

    /// 0 for the root.
    std::size_t Depth() const noexcept { return m_path.size() - 1; }
    /// The component's index among those of the scene.
    std::size_t ComponentIndex() const noexcept { return m_path.back().component; }
    /// The component that occurs here, which belongs to the scene.
    SceneComponent const& Component() const;
    /// What places it; null for the root.
    ScenePlacement const* Placement() const noexcept { return m_path.back().placement; }
    /// Its place among the placements of the component above; kNoIndex for the root.
    std::size_t PlacementIndex() const noexcept;
    /// The component above; null for the root.
    SceneComponent const* Above() const;
    /// What holds for this occurrence, with what those above it say.
    OccurrenceState const& State() const noexcept { return m_path.back().state; }
    /// From the component, in its unit, to the one above, in the unit of that; for the root, to the scene's unit.
    Matrix const& Step() const noexcept { return Here().step; }
    /// From the component, in its unit, to the root's coordinates in the scene's unit.
    Matrix const& Place() const noexcept { return Here().place; }
    /// The ids of the placements from the root to here; empty for the root. A component that stands by itself in a
    /// file is named by its own id.
    std::vector<std::string_view> Path() const;

private:
    struct Level
    {
        std::size_t component;
        std::size_t next;
        ScenePlacement const* placement;
        OccurrenceState state;
    };
    struct Placed
    {
        Matrix step;
        Matrix place;
    };

    void Push(std::size_t component, ScenePlacement const* placement, OccurrenceState&& state);
    bool Enter(ScenePlacement const& placement);
    Placed const& Here() const noexcept;

    Scene const* m_scene;
    std::size_t m_root;
    Mode m_mode;
    bool m_hasStarted = false;
    std::vector<Level> m_path;
    // Where the levels of the path stand: of so many from the root on it has been asked. There is always room for all
    // of the path.
    mutable std::vector<Placed> m_placed;
    mutable std::size_t m_placedCount = 0;
};

}  // namespace KVR
