#pragma once

namespace KVR
{

class StepTransfer;

/// Gives products and usages of a model what a scene says of them: names, numbers, revisions, descriptions,
/// categories, ids, designators and custom properties. A property that is neither text nor number is counted.
void WriteStepProperties(StepTransfer& step);

}  // namespace KVR
