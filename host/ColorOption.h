#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace KVR
{

/// The option "--color" of a command that writes text to standard output.
class ColorOption
{
public:
    /// Declares the option; this must outlive the command.
    void AddTo(CLI::App& command);

    /// Whether colour is wanted: a terminal decides unless the user has, by the option or by NO_COLOR.
    bool IsWanted() const;

private:
    std::string m_choice = "auto";
};

/// Whether standard output is a terminal.
bool IsTerminal();

}  // namespace KVR
