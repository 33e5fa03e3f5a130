#pragma once

#include <string>
#include <vector>

#include "producer/XMLProducer.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// What a walk over a scene met, and everything it was told.
struct SceneAnswers
{
    unsigned long long files = 0;
    unsigned long long assemblies = 0;
    unsigned long long parts = 0;
    unsigned long long instances = 0;
    /// Geometry of any kind.
    unsigned long long shapes = 0;
    /// Callouts and their elements.
    unsigned long long notes = 0;
    /// Ids that were named and have no object.
    unsigned long long absent = 0;
    /// One line per answer, in the order of the walk; two scenes that answer alike have equal texts.
    std::string text;

    unsigned long long Objects() const { return files + assemblies + parts + instances + shapes + notes; }
};

/// Asks the producer, its universe and every object all their questions: from the root and from each id given, over
/// children and targets, each object once. It is not recursive: any depth will do.
SceneAnswers WalkScene(XMLProducer& producer, std::vector<std::string> const& ids = {});

}  // namespace KVR::Test
