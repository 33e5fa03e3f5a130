#pragma once

namespace KVR
{

struct DumpOptions;
class JsonWriter;
class PropertyDatabase;

/// What the dump of every object needs.
struct DumpContext
{
    JsonWriter& json;
    DumpOptions const& options;
    /// Null when the scene has no universe.
    PropertyDatabase const* properties = nullptr;
};

}  // namespace KVR
