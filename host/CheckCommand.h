#pragma once

#include <string>
#include <vector>

#include "exchange/source/SceneOptions.h"
#include "host/ColorOption.h"
#include "host/Command.h"
#include "inspect/Check.h"

namespace KVR
{

struct CheckedScene;

/// The command "check": what of scenes is lost, odd or probably not meant.
class CheckCommand final : public Command
{
public:
    explicit CheckCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    enum class Form
    {
        kText,
        kJson,
        kSarif,
        kFix
    };

    void AddForms(CLI::App& arguments);
    std::vector<CheckedScene> CheckAll() const;

    std::vector<std::string> m_scenes;
    SceneOptions m_reading;
    CheckOptions m_options;
    Form m_form = Form::kText;
    bool m_all = false;
    Severity m_failOn = Severity::kError;
    std::string m_baseline;
    ColorOption m_color;
};

}  // namespace KVR
