#pragma once

#include <string>

#include "exchange/import/Import.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// The command "import" of the program.
class ImportCommand
{
public:
    explicit ImportCommand(CLI::App& program);

    bool IsChosen() const;
    /// The exit status.
    int Run();

private:
    CLI::App& m_command;
    ImportOptions m_options;
    std::string m_deflection = "0.1%";
    std::string m_unit = "millimeter";
    bool m_withoutMeshes = false;
    bool m_withoutBreps = false;
    bool m_withoutNotes = false;
};

/// What is wrong with the text of a deflection; empty for nothing.
std::string ProblemOfDeflection(std::string const& text);

}  // namespace KVR
