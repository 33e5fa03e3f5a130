#pragma once

#include <functional>
#include <string>

namespace KVR
{

/// What came of work in a child process.
struct ChildResult
{
    /// The number of the signal that ended the child; 0 when none did.
    int signal = 0;
    /// Whether the work threw; `text` is then the exception's message.
    bool hasFailed = false;
    /// What the work answered.
    std::string text;
};

/// Runs the work in a copy of this process, so that its crash ends the copy alone, and waits for it. What the work
/// changes in memory is lost; files that it writes stay. To be called while the process has one thread. Throws
/// std::system_error when there can be no child.
ChildResult RunInChild(std::function<std::string()> const& work);

}  // namespace KVR
