#pragma once

#include <functional>
#include <map>
#include <string>

namespace KVR::Bench
{

using Figures = std::map<std::string, double>;

/// Runs the work in a child process of its own and hands its figures back, so that its memory is its own and starts
/// from the same place each time. Throws std::runtime_error with the child's message when the work failed.
Figures InChildProcess(std::function<Figures()> const& work);

/// Runs the work in a child process of its own, for its effect on files: what it takes of memory is gone with it, and
/// the processes that measure do not inherit it. Throws as above.
void DoInChildProcess(std::function<void()> const& work);

/// The most memory that this process has had resident since it was forked, in bytes.
double PeakResidentBytes();

/// What of this process is resident now, in bytes.
double ResidentBytes();

}  // namespace KVR::Bench
