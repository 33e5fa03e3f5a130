#pragma once

namespace KVR
{

class IUniverse;
class JsonWriter;

/// Writes the object that stands for the universe.
void DumpUniverse(JsonWriter& json, IUniverse const& universe);

}  // namespace KVR
