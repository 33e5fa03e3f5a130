#pragma once

#include <string>

#include "exchange/ImportModel.h"
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
    std::string m_model;
    std::string m_scene;
    ImportOptions m_options;
    std::string m_deflection = "0.1%";
    std::string m_unit = "millimeter";
    std::string m_up;
    bool m_withoutMeshes = false;
    bool m_withoutBreps = false;
    bool m_withoutNotes = false;
    bool m_isQuiet = false;
};

/// The text of a deflection: a length, or a percentage of the diagonal, such as "0.1%". Throws std::invalid_argument.
Deflection DeflectionOf(std::string const& text);

/// What is wrong with the text of a deflection; empty for nothing.
std::string ProblemOfDeflection(std::string const& text);

}  // namespace KVR
