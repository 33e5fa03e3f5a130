#pragma once

#include <span>
#include <string>
#include <vector>

#include "framework/api/UTF8String.h"

namespace KVR
{

class FileQueryResult;
class IProducer;
class JsonWriter;

/// What of a scene's objects a dump shows.
struct SceneDumpOptions
{
    /// Type ids of the extension data to ask each object for.
    std::span<std::string const> extensionTypeIds = {};
    /// Leave out the long lists, and the measures of bodies that cost much.
    bool summary = false;
    /// Leave those measures in a summary: volumes, areas and boxes.
    bool mass = false;
};

/// Writes what the producer said about the file, as one value: null for no answer.
void WriteQueryDump(JsonWriter& json, FileQueryResult const* query);

/// Writes the members "Universe" and "Objects" of a dump: what the scene as a whole answers, and every object that is
/// reached from the ids, in the order reached; the walk from one id ends before that from the next begins. Nothing of
/// the text is kept.
void WriteSceneDump(JsonWriter& json, IProducer& producer, std::span<UTF8String const> ids,
                    SceneDumpOptions const& options);

}  // namespace KVR
