#pragma once

#include <string>

#include "host/Command.h"

namespace KVR
{

/// The command "certify": makes a scene of a model, exports that, and compares all of them.
class CertifyCommand final : public Command
{
public:
    explicit CertifyCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::string m_model;
    bool m_asJson = false;
    bool m_isQuiet = false;
};

}  // namespace KVR
