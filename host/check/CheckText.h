#pragma once

#include "inspect/Check.h"

namespace KVR
{

class Output;

/// Writes findings for people, grouped by rule and counted; at most ten places of each unless all are wanted.
void WriteCheckText(CheckResult const& result, bool all, Output& out);

/// Writes a table of accounts.
void WriteAccounts(CheckResult const& result, Output& out);

}  // namespace KVR
