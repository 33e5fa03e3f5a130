#include "host/ColorOption.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>

namespace KVR
{

void ColorOption::AddTo(CLI::App& command)
{
    command.add_option("--color", m_choice, "Colour: auto, always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

bool ColorOption::IsWanted() const
{
    char const* const noColor = std::getenv("NO_COLOR");
    if (m_choice == "auto")
        return IsTerminal() && (!noColor || *noColor == '\0');
    return m_choice == "always";
}

bool IsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

}  // namespace KVR
