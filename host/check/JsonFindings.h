#pragma once

#include <span>

namespace KVR
{

class Output;
struct CheckedScene;

/// Writes what was found in scenes as JSON, in the form of docs/check.schema.json.
void WriteFindingsAsJson(std::span<CheckedScene const> scenes, Output& out);

/// The same as a log in the Static Analysis Results Interchange Format (SARIF) 2.1.0.
void WriteFindingsAsSarif(std::span<CheckedScene const> scenes, Output& out);

}  // namespace KVR
