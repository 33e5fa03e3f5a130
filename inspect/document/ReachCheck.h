#pragma once

namespace KVR
{

class SceneCheck;

/// Adds findings about references of objects that lead nowhere, and objects that no reference leads to.
void CheckReach(SceneCheck& check);

}  // namespace KVR
