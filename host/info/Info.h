#pragma once

namespace KVR
{

class Output;
struct SceneCensus;

/// Writes what a scene consists of, and what reading it takes, for people.
void WriteInfoAsText(SceneCensus const& census, Output& out);

/// The same, with the counts of all elements, as one JSON object.
void WriteInfoAsJson(SceneCensus const& census, Output& out);

}  // namespace KVR
