#pragma once

#include <string>

namespace KVR
{

class JsonWriter;
struct SceneNote;

/// The values that an annotation has beside its text, in words: "-0.2 +0.1, maximum material requirement"; empty for
/// none. Details that are no JSON object have none.
std::string ValuesOf(SceneNote const& note);

/// The details of an annotation as an object of numbers, texts and lists of texts; null for none.
void WriteDetails(JsonWriter& json, SceneNote const& note);

}  // namespace KVR
