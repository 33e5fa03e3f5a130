#pragma once

#include "exchange/export/StepTransfer.h"

namespace KVR
{

/// Adds to a model what each solid of a part of several measures: volume, area and centre as geometric validation
/// properties of a shape aspect that names the solid, so that a receiver can check it. Of a part of one solid, the
/// part's own say it.
void WriteSolidMeasures(StepTransfer& step);

}  // namespace KVR
