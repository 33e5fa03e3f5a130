#pragma once

#include <span>

#include "inspect/Finding.h"

namespace KVR
{

class SceneCheck;

/// The rules K-04nn, on meshes, bodies and their places.
std::span<Rule const> GeometryRules();
/// Looks for what those rules find.
void CheckGeometry(SceneCheck& check);

}  // namespace KVR
