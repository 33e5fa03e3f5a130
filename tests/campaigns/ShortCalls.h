#pragma once

#include <string>
#include <vector>

namespace KVR::Campaigns
{

/// Calls of read and write, by their numbers from 1 over all processes of a program, that are to be short.
struct ShortCalls
{
    long first = 0;
    long end = 0;
};

/// Runs a program in a folder, which is that for temporary files, too; each of these calls gets a single byte. What it
/// says goes to the files "out" and "error" of another folder. Its exit status, or -1; `count` is set to the number of
/// calls that were of more than a byte. Negative, with a count of 0, on a machine whose registers are not known here.
int RunWithShortCalls(std::vector<std::string> const& arguments, std::string const& folder, std::string const& said,
                      ShortCalls const& calls, long& count);

}  // namespace KVR::Campaigns
