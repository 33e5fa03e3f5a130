#pragma once

#include <span>

#include "inspect/Finding.h"

namespace KVR
{

class SceneCheck;
struct StoreRecord;
struct UsedIds;

/// The rules K-03nn, on side files and what stands in them.
std::span<Rule const> SideFileRules();
/// The rule by which a record is dropped: it was not kept, or nothing takes it; null for one that is served, and for
/// one of an unknown kind.
Rule const* DropOf(StoreRecord const& record, UsedIds const& used);
/// Looks for what those rules find.
void CheckSideFiles(SceneCheck& check);

}  // namespace KVR
