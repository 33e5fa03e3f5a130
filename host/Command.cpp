#include "host/Command.h"

#include <CLI/CLI.hpp>
#include <cstdio>

namespace KVR
{

Command::Command(CLI::App& program, std::string const& name, std::string const& description)
    : m_arguments(*program.add_subcommand(name, description))
{
}

bool Command::IsChosen() const
{
    return m_arguments.parsed();
}

void Complain(std::string const& sentence)
{
    std::fputs(("kvr: " + sentence + "\n").c_str(), stderr);
}

}  // namespace KVR
