#pragma once

#include "host/Commands.h"

namespace KVR
{

template <class... Classes>
Commands MakeAll(CLI::App& program)
{
    Commands commands;
    (commands.push_back(std::make_unique<Classes>(program)), ...);
    return commands;
}

}  // namespace KVR
