#pragma once

namespace KVR
{

class Output;
struct Explanation;

/// Writes an explanation for people.
void WriteExplanationAsText(Explanation const& explanation, Output& out);

/// Writes it as docs/explain.schema.json says.
void WriteExplanationAsJson(Explanation const& explanation, Output& out);

}  // namespace KVR
