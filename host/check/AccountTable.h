#pragma once

#include <vector>

#include "inspect/Check.h"

namespace KVR
{

class Output;

/// Writes accounts as a table, a line for each file, and below it the rules by which something of it was dropped;
/// nothing without any.
void WriteAccounts(std::vector<Account> const& accounts, Output& out);

}  // namespace KVR
