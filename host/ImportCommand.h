#pragma once

#include <string>

#include "exchange/import/Import.h"
#include "host/Command.h"

namespace KVR
{

/// The command "import".
class ImportCommand final : public Command
{
public:
    explicit ImportCommand(CLI::App& program);

    ExitStatus Run() override;

private:
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
