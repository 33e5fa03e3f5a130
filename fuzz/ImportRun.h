#pragma once

#include <cstddef>
#include <cstdint>

#include "exchange/model/ModelFormat.h"

namespace KVR::Fuzz
{

/// Imports the input as a model of that format, as the program's child process does: a scene, or one sentence and
/// nothing else. Always 0. What is not of that format by its first bytes is left alone, as are inputs over 8 kB.
int RunImport(std::uint8_t const* data, std::size_t size, ModelFormat format, char const* fileName);

}  // namespace KVR::Fuzz
