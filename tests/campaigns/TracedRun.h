#pragma once

#include <string>
#include <vector>

namespace KVR::Campaigns
{

/// Calls of the system that do not go as they should, and how many there are of their kind.
struct TracedCalls
{
    /// Its number; negative for reads and writes of more than a byte, which get a single one.
    long call = -1;
    /// With which it fails, without being made (other than to close a file).
    int error = 0;
    /// Which of them, by their numbers from 1 over all processes of a program.
    long first = 0;
    long end = 0;
};

/// Runs a program in a folder, which is that for temporary files, too, and in whose calls it interferes. What it says
/// goes to the files "out" and "error" of another folder. Its exit status, or -1, also when it takes five minutes;
/// `count` is set to the number of calls of the kind. Negative, with a count of 0, on a machine whose registers are not
/// known here.
int RunTraced(std::vector<std::string> const& arguments, std::string const& folder, std::string const& said,
              TracedCalls const& calls, long& count);

}  // namespace KVR::Campaigns
