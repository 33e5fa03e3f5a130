#include "host/Command.h"

#include <CLI/CLI.hpp>
#include <cstdio>

namespace KVR
{

void Complain(std::string const& sentence)
{
    std::fputs(("kvr: " + sentence + "\n").c_str(), stderr);
}

void AddSceneOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("scene", options.path, "The scene file")->required()->type_name("SCENE");
    command.add_option("--prefix", options.prefix, "Give objects new ids: this prefix and a number")->type_name("TEXT");
    command.add_flag("--allow-dtd", options.allowDtd,
                     "Allow a document type declaration, and with it entities and references to other documents, "
                     "also on the network; for scenes that you trust");
}

}  // namespace KVR
