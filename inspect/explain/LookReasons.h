#pragma once

#include <vector>

#include "inspect/Explain.h"

namespace KVR
{

class OccurrenceWalk;
struct SceneComponent;
struct SceneGeometry;
struct ScenePlacement;

/// A component on the way from the root to an occurrence, and what places it; null for the root.
struct OccurrenceLevel
{
    SceneComponent const* component = nullptr;
    ScenePlacement const* placement = nullptr;
};

/// The levels from the root to where a walk stands.
class LevelStack
{
public:
    /// To be called at each step.
    void Follow(OccurrenceWalk const& walk);

    std::vector<OccurrenceLevel> const& Levels() const noexcept { return m_levels; }

private:
    std::vector<OccurrenceLevel> m_levels;
};

/// What holds for the occurrence at which the walk stands, or for geometry of its component there, and what decides it.
/// The path is left empty.
ExplainedOccurrence LookOf(OccurrenceWalk const& walk, LevelStack const& levels, SceneGeometry const* geometry);

}  // namespace KVR
