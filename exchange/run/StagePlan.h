#pragma once

#include <vector>

#include "exchange/Progress.h"

namespace KVR
{

/// A stage of some work, with the share of the time that it usually takes beside the others.
struct PlannedStage
{
    char const* name;
    double share;
};

/// A callback for work of these stages, in this order, that tells another one how much of all is done. That other one
/// must outlive it. Nobody for nobody. A name that occurs several times is that of the next such stage when another was
/// told in between. A stage that is told when its turn is over, as when work is begun once more, leaves what is done as
/// it is.
Progress Planned(Progress const& progress, std::vector<PlannedStage> stages);

/// A callback for a part of some work, from one fraction of the whole to another, as above.
Progress PartOf(Progress const& progress, double from, double to);

}  // namespace KVR
