#pragma once

#include <string>

#include "exchange/source/SceneOptions.h"
#include "host/Command.h"
#include "inspect/Explain.h"

namespace KVR
{

/// The command "explain": what a scene makes of one object, and why.
class ExplainCommand final : public Command
{
public:
    explicit ExplainCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    SceneOptions m_scene;
    std::string m_name;
    ExplainOptions m_options;
    bool m_asJson = false;
};

}  // namespace KVR
