#pragma once

#include <cstddef>

#include "exchange/export/StepTransfer.h"

namespace KVR
{

class Output;

/// Writes the meshes of a document behind the entities of its model, as tessellated geometry of AP242: a shell for each
/// mesh with a face for each style, in a representation beside that of its product. `last` is the greatest number of an
/// entity so far. Nothing stays in memory but one mesh at a time.
void WriteTessellations(StepTransfer& step, std::size_t last, Output& out);

}  // namespace KVR
