#pragma once

#include <vector>

#include "inspect/Check.h"

namespace KVR
{

struct DocumentTally;
class SceneCheck;

/// What became of what the document and each side file hold.
std::vector<Account> MakeAccounts(SceneCheck const& check, DocumentTally const& tally);

}  // namespace KVR
