#pragma once

#include <optional>

namespace KVR
{

class Scene;
class SceneCheck;

/// The resolved scene of a check; nothing for one without a root.
std::optional<Scene> SceneModel(SceneCheck const& check);

}  // namespace KVR
