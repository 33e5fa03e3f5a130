#pragma once

#include <span>

#include "inspect/Finding.h"

namespace KVR
{

class SceneCheck;

/// The rules K-05nn, on units and sizes.
std::span<Rule const> UnitRules();
/// Looks for what those rules find.
void CheckUnits(SceneCheck& check);

}  // namespace KVR
