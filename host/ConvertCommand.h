#pragma once

#include <optional>
#include <string>

#include "exchange/source/SceneOptions.h"
#include "host/Command.h"
#include "host/ExportArguments.h"
#include "host/ImportArguments.h"
#include "host/MeshArguments.h"

namespace KVR
{

/// The command "convert": an import and an export in one.
class ConvertCommand final : public Command
{
public:
    explicit ConvertCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::string m_source;
    std::string m_target;
    std::optional<std::string> m_scenePath;
    ImportArguments m_import;
    ExportArguments m_export;
    MeshArguments m_meshing;
    SceneOptions m_scene;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
