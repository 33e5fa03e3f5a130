#pragma once

#include <string>

#include "exchange/source/SceneOptions.h"

namespace KVR
{

/// Why reading the scene is refused: a cause as SceneProblem tells one, when it would take more memory than the options
/// allow. Empty when it would not, when there is no limit, and for a document that cannot be counted: reading it tells
/// why. Takes one pass over the document.
std::string MemoryProblem(SceneOptions const& options);

}  // namespace KVR
