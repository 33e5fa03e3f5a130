#pragma once

#include <string_view>
#include <vector>

#include "scene/Export.h"
#include "scene/SceneComponent.h"

namespace KVR
{

/// What holds for an occurrence: what the assemblies above it say of it, where they do, and otherwise what it says
/// itself. The outermost assembly that names an occurrence decides. The scene must outlive it.
class KVR_SCENE_API OccurrenceState
{
public:
    /// That of a scene's root component.
    explicit OccurrenceState(SceneComponent const& root);

    /// That of what a placement of the component places. `target` is that component.
    OccurrenceState Below(ScenePlacement const& placement, SceneComponent const& target) const;

    /// Whether it and all above it are shown.
    bool isVisible = true;
    /// Whether it is shown where all above it are.
    bool showsItself = true;
    /// The style that an override or an instance gives to all below it; null for none.
    SceneStyle const* imposedStyle = nullptr;
    /// The style of the component, or of the nearest one above that has any, for geometry without its own; null for
    /// none.
    SceneStyle const* inheritedStyle = nullptr;

    /// From the component to that above it, in the unit of the one above. It belongs to the scene.
    Matrix const& Transform() const noexcept { return *m_transform; }

    // What is said of a body holds for its mesh as well.

    /// Whether geometry of the component is shown; false for all of it where the occurrence is hidden.
    bool IsVisible(SceneGeometry const& geometry) const;
    /// Whether geometry of the component is shown where the occurrence is.
    bool ShowsItself(SceneGeometry const& geometry) const;
    /// From the geometry to its component, in the geometry's own unit.
    Matrix const& TransformOf(SceneGeometry const& geometry) const;
    /// The same, to the component's unit. `component` is the one that has the geometry.
    Matrix PlaceOf(SceneGeometry const& geometry, SceneComponent const& component) const;
    /// The style of geometry as a whole, which its faces have unless they have their own; null for none.
    SceneStyle const* StyleOf(SceneGeometry const& geometry) const;
    /// Whether faces and materials of geometry keep their own styles.
    bool KeepsFaceStyles(SceneGeometry const& geometry) const;

    /// Of each assembly above that speaks of this occurrence or of what is below it, what it says; the outermost
    /// first.
    std::vector<SceneOverride const*> const& Overrides() const noexcept { return m_overrides; }

private:
    OccurrenceState() = default;

    void Enter(SceneComponent const& component);

    // Many are walked whose places nobody asks for.
    Matrix const* m_transform = &kIdentity;
    std::vector<SceneOverride const*> m_overrides;
};

}  // namespace KVR
