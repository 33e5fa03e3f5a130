#pragma once

#include <array>
#include <csignal>
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

/// Holds back the signals by which a user ends the program (SIGINT, SIGTERM, SIGHUP) while it lives: they reach it in
/// RunInChild alone, and one that comes later ends the program afterwards. Whoever makes files that must not stay makes
/// this first.
class InterruptionScope
{
public:
    InterruptionScope();
    ~InterruptionScope();
    InterruptionScope(InterruptionScope const&) = delete;
    InterruptionScope& operator=(InterruptionScope const&) = delete;

private:
    std::array<struct sigaction, 3> m_actions{};
    sigset_t m_mask{};
};

/// Does work in a child process, where it may crash: what it answers comes back. The work throws nothing. The program
/// has one thread when this is called. Throws std::system_error when there can be no child.
ChildResult RunInChild(std::function<std::string()> const& work);

/// The text of a signal, such as "Segmentation fault".
std::string SignalText(int signal);

}  // namespace KVR
