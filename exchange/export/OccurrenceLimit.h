#pragma once

#include "exchange/export/SceneModel.h"

namespace KVR
{

/// Throws std::runtime_error for a scene with more occurrences than that, counted without walking them: a few
/// components in one another may stand for more than any memory holds.
void RefuseMoreOccurrences(SceneModel const& scene, unsigned long long limit);

}  // namespace KVR
