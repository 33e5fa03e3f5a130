#pragma once

#include <vector>

#include "framework/api/UTF8String.h"

namespace KVR
{

class IObject;

/// Appends the ids that an object names, in the order of a dump: its children, an instance's target, its sets of ids,
/// an annotation's plane. Ids of properties, and those in occurrence paths, are no references to objects.
void CollectReferences(IObject& object, std::vector<UTF8String>& ids);

}  // namespace KVR
