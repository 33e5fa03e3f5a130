#include "inspect/rules/SideFileRules.h"

namespace KVR
{

std::span<Rule const> SideFileRules()
{
    return {};
}

void CheckSideFiles(SceneCheck&) {}

}  // namespace KVR
