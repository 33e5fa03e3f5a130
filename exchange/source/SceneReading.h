#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/source/Failure.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class FileQueryResult;
class IProducer;
class SceneFile;

/// What came of reading a scene.
struct SceneReading
{
    /// Null when the query failed; owned by the producer.
    FileQueryResult const* query = nullptr;
    /// What BeginProcess threw.
    std::optional<Failure> failure;
    /// What RootObjectId threw.
    std::optional<Failure> rootFailure;
    std::optional<UTF8String> rootId;
    std::vector<Failure> events;

    /// Sentences without their full stops on side files that are missing, short or another scene's, with names as they
    /// stand. Those of a strict reading are its failure.
    std::vector<std::string> sideFileProblems;

    /// Queries the scene, reads it and asks for its root. Throws nothing of the producer's.
    static SceneReading Of(IProducer& producer);
    /// The same, with its side files held against what the scene notes of them. A strict reading ends with the first
    /// step that tells of a problem, and one of too much memory does not begin.
    static SceneReading Of(SceneFile& file);
};

}  // namespace KVR
