#pragma once

#include "scene/Scene.h"

namespace KVR
{

/// Throws std::runtime_error for a scene with more occurrences than that, counted without walking them: a few
/// components in one another may stand for more than any memory holds.
void RefuseMoreOccurrences(Scene const& scene, unsigned long long limit);

}  // namespace KVR
