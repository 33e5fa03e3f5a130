#pragma once

#include <string>

namespace KVR
{

struct SceneContent;

/// Makes what a saved view, named by its id or label, says of its members hold in the scene: it goes before all that
/// assemblies say. Members whose path leads nowhere have no effect. Throws SceneFilterError for a name that no view
/// has.
void ApplyView(SceneContent& content, std::string const& name);

}  // namespace KVR
