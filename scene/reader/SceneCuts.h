#pragma once

#include <cstddef>

namespace KVR
{

struct SceneContent;
struct SceneFilter;
struct SceneSelection;

/// Cuts placements that would close a cycle or reach too deep, by one walk that follows each component once.
void CutCycles(SceneContent& content, std::size_t mostLevels);

/// Takes out what the user does not want. The scene has no cycles any more.
void ApplyFilter(SceneContent& content, SceneFilter const& filter);
void ApplySelection(SceneContent& content, SceneSelection const& selection);

}  // namespace KVR
