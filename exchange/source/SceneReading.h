#pragma once

#include <optional>
#include <vector>

#include "exchange/source/Failure.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class FileQueryResult;
class IProducer;

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

    /// Queries the scene, reads it and asks for its root. Throws nothing of the producer's.
    static SceneReading Of(IProducer& producer);
};

}  // namespace KVR
