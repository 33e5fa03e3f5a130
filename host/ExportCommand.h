#pragma once

#include <optional>
#include <string>

#include "host/Command.h"
#include "host/ExportArguments.h"
#include "host/MeshArguments.h"

namespace KVR
{

/// The command "export".
class ExportCommand final : public Command
{
public:
    explicit ExportCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    SceneOptions m_scene;
    std::string m_target;
    ExportArguments m_export;
    MeshArguments m_meshing;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
