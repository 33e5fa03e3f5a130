#pragma once

#include <optional>
#include <string>

#include "host/Command.h"

namespace KVR
{

struct CertifyResult;

/// The command "certify": makes a scene of a model, exports that, and compares all of them.
class CertifyCommand final : public Command
{
public:
    explicit CertifyCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    bool WritePage(CertifyResult const& result) const;

    std::string m_model;
    std::string m_other;
    std::string m_page;
    bool m_asJson = false;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
