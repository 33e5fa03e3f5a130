#include "inspect/document/DocumentRules.h"

namespace KVR
{

void CheckValues(SceneCheck&) {}

}  // namespace KVR
