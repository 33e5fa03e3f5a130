#pragma once

#include <functional>
#include <optional>
#include <string>

namespace KVR
{

/// How work in a child process ended.
struct ChildResult
{
    /// What the work answered: empty when it was not done to its end.
    std::optional<std::string> answer;
    /// The signal that ended the child, 0 for none.
    int signal = 0;
    /// Whether the user ended the program meanwhile (SIGINT, SIGTERM, SIGHUP); the child is gone then.
    bool isInterrupted = false;
};

/// Does work in a child process, where it may crash: what it answers comes back. The work throws nothing. The program
/// has one thread when this is called. Throws std::system_error when there can be no child.
ChildResult RunInChild(std::function<std::string()> const& work);

/// The text of a signal, such as "Segmentation fault".
std::string SignalText(int signal);

}  // namespace KVR
