#pragma once

#include "framework/api/UTF8String.h"

namespace KVR
{

/// Reads a text of three numbers with commas between them. A text of another number of pieces leaves the outputs alone
/// and gives false; a piece that is no number is 0.
[[nodiscard]] bool ReadVectorText(UTF8String const& text, double& x, double& y, double& z);

}  // namespace KVR
