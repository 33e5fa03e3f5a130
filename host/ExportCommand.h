#pragma once

#include <string>

#include "exchange/ExportScene.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// The command "export" of the program.
class ExportCommand
{
public:
    explicit ExportCommand(CLI::App& program);

    bool IsChosen() const;
    /// The exit status.
    int Run();

private:
    CLI::App& m_command;
    SceneOptions m_scene;
    std::string m_target;
    ExportOptions m_options;
    std::string m_deflection = "0.1%";
    bool m_isQuiet = false;
};

}  // namespace KVR
