#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace KVR
{

/// The command "certify" of the program: makes a scene of a model, exports that, and compares all of them.
class CertifyCommand
{
public:
    explicit CertifyCommand(CLI::App& program);

    bool IsChosen() const;
    /// The exit status.
    int Run();

private:
    CLI::App& m_command;
    std::string m_model;
    bool m_asJson = false;
    bool m_isQuiet = false;
};

}  // namespace KVR
