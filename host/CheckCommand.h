#pragma once

#include <string>
#include <vector>

#include "host/Command.h"
#include "inspect/Check.h"

namespace KVR
{

/// The command "check": what of scenes is lost, odd or probably not meant.
class CheckCommand final : public Command
{
public:
    explicit CheckCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::vector<std::string> m_scenes;
    CheckOptions m_options;
    bool m_all = false;
};

}  // namespace KVR
