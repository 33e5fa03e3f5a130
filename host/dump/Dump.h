#pragma once

namespace KVR
{

struct DumpOptions;
class IProducer;
class Output;
struct SceneReading;

/// Writes everything that a producer serves as one JSON object, object by object: nothing of the text is kept.
void WriteDump(IProducer& producer, SceneReading const& reading, DumpOptions const& options, Output& out);

}  // namespace KVR
