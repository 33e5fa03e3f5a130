#pragma once

#include <string>
#include <vector>

#include "exchange/export/SceneModel.h"

namespace KVR
{

/// What holds for an occurrence: what the assemblies above it say of it, where they do, and otherwise what it says
/// itself. The outermost assembly that names an occurrence decides.
class OccurrenceState
{
public:
    /// That of a scene's root component.
    explicit OccurrenceState(ModelComponent const& root);

    /// That of what a placement of the component places. `target` is that component.
    OccurrenceState Below(ModelPlacement const& placement, ModelComponent const& target) const;

    bool isVisible = true;
    /// From the component to that above it, in the unit of the one above.
    Matrix transform = kIdentity;
    /// The style that an override or an instance gives to all below it; empty for none.
    std::string imposedStyle;
    /// The style of the component, or of the nearest one above that has any, for geometry without its own.
    std::string inheritedStyle;

    // What is said of a body holds for its mesh as well.

    bool IsVisible(ModelGeometry const& geometry) const;
    /// From the geometry to its component, in the geometry's own unit.
    Matrix const& TransformOf(ModelGeometry const& geometry) const;
    /// The style of geometry as a whole, which its faces have unless they have their own; empty for none.
    std::string StyleOf(ModelGeometry const& geometry) const;
    /// Whether faces and materials of geometry keep their own styles.
    bool KeepsFaceStyles(ModelGeometry const& geometry) const;

private:
    OccurrenceState() = default;

    void Enter(ModelComponent const& component);
    ModelOverride const* OverrideOf(std::string const& id, bool (*has)(ModelOverride const&)) const;
    ModelOverride const* OverrideOf(ModelGeometry const& geometry, bool (*has)(ModelOverride const&)) const;

    /// Of each assembly above that speaks of this occurrence or of what is below it, the outermost first.
    std::vector<ModelOverride const*> m_overrides;
};

}  // namespace KVR
