#pragma once

#include <string>

#include "exchange/source/SceneOptions.h"
#include "host/Command.h"

namespace KVR
{

/// The command "diff": in what two scenes differ.
class DiffCommand final : public Command
{
public:
    explicit DiffCommand(CLI::App& program);

    ExitStatus Run() override;
    ExitStatus FailureStatus() const noexcept override { return kExit_NotCompared; }

private:
    SceneOptions m_scene;
    std::string m_first;
    std::string m_second;
    std::string m_page;
    bool m_all = false;
    bool m_asJson = false;
};

}  // namespace KVR
