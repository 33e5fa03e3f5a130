#pragma once

#include <string>

#include "exchange/ExportScene.h"
#include "host/Command.h"

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
    ExportOptions m_options;
    std::string m_unit;
    std::string m_deflection = "0.1%";
    bool m_isQuiet = false;
};

}  // namespace KVR
