#pragma once

#include <string>

#include "host/Command.h"

namespace KVR
{

/// The command "info": what a scene consists of and what reading it takes, without reading it.
class InfoCommand final : public Command
{
public:
    explicit InfoCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::string m_path;
    bool m_asJson = false;
};

}  // namespace KVR
