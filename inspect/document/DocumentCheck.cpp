#include "inspect/document/DocumentRules.h"

namespace KVR
{

void CheckDocument(SceneCheck&) {}

}  // namespace KVR
