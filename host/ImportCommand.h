#pragma once

#include <optional>
#include <string>

#include "host/Command.h"
#include "host/ImportArguments.h"
#include "host/MeshArguments.h"

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
    ImportArguments m_import;
    MeshArguments m_meshing;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
