#pragma once

#include <fuzzer/FuzzedDataProvider.h>
#include <string>

namespace KVR::Fuzz
{

/// Writes a scene as the input tells, with kernel, mesh and segment stores, looks, notes and views, whose references
/// may lead anywhere, and changes some bytes of its stores, of which kernel stores fit their digest still. Throws
/// Exception where the writer refuses what the input asks for.
void WriteHostileScene(std::string const& path, FuzzedDataProvider& input);

}  // namespace KVR::Fuzz
