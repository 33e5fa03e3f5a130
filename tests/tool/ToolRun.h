#pragma once

#include <functional>
#include <string>
#include <vector>

namespace KVR::Test
{

/// What came of a run of the program kvr.
struct ToolRun
{
    int status = -1;
    std::string out;
    std::string error;
    /// The most memory that it held, in kB.
    long peakMemory = 0;
};

/// Runs the program with the arguments, and waits for it; a signal that ended it gives a status of 128 and its number.
/// A dump that is not as docs/dump.schema.json says fails the test.
ToolRun RunTool(std::vector<std::string> const& arguments);

/// Runs another program, by its path, in the same way.
ToolRun RunProgram(std::vector<std::string> const& words);

/// Runs it where no file may grow beyond so many bytes.
ToolRun RunToolWithFileLimit(std::vector<std::string> const& arguments, unsigned long long bytes);

/// Runs it until that is so, sends it the signal then, and answers its status. What it writes is lost.
int RunToolUntil(std::vector<std::string> const& arguments, std::function<bool()> const& isTime, int signal);

/// Runs it with a terminal as standard output, whose line ends are those of a terminal.
ToolRun RunToolOnTerminal(std::vector<std::string> const& arguments);

/// Runs it with a pipe as standard output that nobody reads any more.
int RunToolWithoutReader(std::vector<std::string> const& arguments);

}  // namespace KVR::Test
