#pragma once

#include <span>

#include "inspect/Finding.h"

namespace KVR
{

class SceneCheck;

/// The rules K-03nn, on side files and what stands in them.
std::span<Rule const> SideFileRules();
/// Looks for what those rules find.
void CheckSideFiles(SceneCheck& check);

}  // namespace KVR
