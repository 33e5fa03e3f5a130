#pragma once

#include <optional>
#include <string>

#include "exchange/source/SceneOptions.h"
#include "host/Command.h"
#include "host/ImportArguments.h"
#include "host/MeshArguments.h"
#include "scene/SceneFilter.h"

namespace KVR
{

/// The command "view": a scene, or a model, as one page.
class ViewCommand final : public Command
{
public:
    explicit ViewCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::string m_source;
    std::string m_target;
    ImportArguments m_import;
    MeshArguments m_meshing;
    SceneOptions m_scene;
    SceneFilter m_filter;
    std::optional<unsigned long long> m_mostTriangles;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
