#include "host/CommonOptions.h"

#include <CLI/CLI.hpp>

#include "host/NumberRange.h"

namespace KVR
{

void AddSceneOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("scene", options.path, "The scene file")->required()->type_name("SCENE");
    AddReadingOptions(command, options);
}

void AddReadingOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("--prefix", options.prefix, "Give objects new ids: this prefix and a number")->type_name("TEXT");
    command.add_flag("--allow-dtd", options.allowDtd,
                     "Allow a document type declaration, and with it entities and references to other documents, "
                     "also on the network; for scenes that you trust");
    command.add_flag("--strict", options.strict,
                     "Refuse a scene with a side file that is missing, short or another scene's");
}

void AddInsecureOption(CLI::App& command, SceneOptions& options)
{
    command.add_flag("--insecure", options.insecure, "Restore kernel stores that the kernel judges insecure");
}

void AddTimeoutOption(CLI::App& command, std::optional<unsigned>& seconds)
{
    constexpr NumberRange kSeconds{1, 1e6, true};
    kSeconds.Check(*command
                        .add_option("--timeout", seconds,
                                    "The processor time in seconds that a process which reads a file may take; in "
                                    "proportion to the file unless given")
                        ->type_name("SECONDS"));
}

void AddJsonOption(CLI::App& command, bool& asJson)
{
    command.add_flag("--json", asJson, "Print JSON");
}

void AddFilterOptions(CLI::App& command, SceneFilter& filter, std::string const& verb)
{
    AddRepeatedOption(command, "--only", filter.only,
                      verb +
                          " this object with all below it, by its id or label, or a layer; * and ? stand for any "
                          "characters and one; may be repeated",
                      "NAME");
    AddRepeatedOption(command, "--hide", filter.hide, "Leave this out, named as above; may be repeated", "NAME");
}

void AddIdOption(CLI::App& command, std::vector<std::string>& ids)
{
    AddRepeatedOption(command, "--id", ids, "Begin a walk at this id, too; may be repeated", "ID");
}

void AddRepeatedOption(CLI::App& command, std::string const& name, std::vector<std::string>& texts,
                       std::string const& description, std::string const& typeName)
{
    command.add_option(name, texts, description)
        ->type_name(typeName)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace KVR
