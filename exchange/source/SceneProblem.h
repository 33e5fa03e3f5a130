#pragma once

#include <string>

#include "exchange/source/Failure.h"
#include "exchange/source/SceneOptions.h"

namespace KVR
{

/// One sentence, without its full stop, that names the file and the cause when BeginProcess failed so. The file is
/// looked at once more, since the exception does not tell why a document could not be parsed.
std::string SceneProblem(SceneOptions const& options, Failure const& failure);

}  // namespace KVR
