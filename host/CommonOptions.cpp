#include "host/CommonOptions.h"

#include <CLI/CLI.hpp>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>

#include "host/NumberRange.h"
#include "host/QueryArguments.h"

namespace KVR
{

namespace
{

constexpr std::pair<std::string_view, double> kSizeUnits[] = {
    {"", 1},
    {"B", 1},
    {"KB", 1e3},
    {"MB", 1e6},
    {"GB", 1e9},
    {"K", 1e3},
    {"M", 1e6},
    {"G", 1e9},
    {"KIB", 1024.0},
    {"MIB", 1024.0 * 1024.0},
    {"TB", 1e12},
    {"T", 1e12},
    {"GIB", 1024.0 * 1024.0 * 1024.0},
    {"TIB", 1024.0 * 1024.0 * 1024.0 * 1024.0},
};

// Makes bytes of the text; the answer tells what is wrong with it.
std::string SizeOfText(std::string& text)
{
    constexpr double kMost = 9e18;
    double number = 0.0;
    char const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, number);
    std::string unit;
    for (char const* letter = result.ptr; letter != end; ++letter)
        if (*letter != ' ')
            unit.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(*letter))));
    for (auto const& [name, bytes] : kSizeUnits)
    {
        double const size = number * bytes;
        if (result.ec != std::errc() || unit != name || !(size >= 1.0 && size <= kMost))
            continue;
        text = std::to_string(static_cast<std::uint64_t>(size));
        return {};
    }
    return text + " is no size, such as 500MB or 2GiB";
}

}  // namespace

void AddSceneOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("scene", options.path, "The scene file")->required()->type_name("SCENE");
    AddReadingOptions(command, options);
}

void AddReadingOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("--prefix", options.prefix, "Give objects new ids: this prefix and a number")->type_name("TEXT");
    AddTrustOption(command, options);
    command.add_flag("--strict", options.strict,
                     "Refuse a scene with a side file that is missing, short or another scene's");
    AddMemoryOption(command, options);
}

void AddMemoryOption(CLI::App& command, SceneOptions& options)
{
    command
        .add_option(
            "--max-memory", options.maxMemory,
            "Refuse a scene whose reading would take more, by the estimate of kvr info: bytes, or a number with "
            "kB, MB, GB, KiB, MiB or GiB")
        ->type_name("SIZE")
        ->transform(CLI::Validator(&SizeOfText, ""));
}

void AddTrustOption(CLI::App& command, SceneOptions& options)
{
    command.add_flag("--allow-dtd", options.allowDtd,
                     "Allow a document type declaration, and with it entities and references to other documents, "
                     "also on the network; for scenes that you trust");
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
    ExpectNamesOrExpressions(AddRepeatedOption(
        command, "--only", filter.only,
        verb +
            " this object with all below it, by its id or label, or a layer; * and ? stand for any characters and one; "
            "or what an expression asks for, as of kvr query; may be repeated",
        "NAME"));
    ExpectNamesOrExpressions(
        AddRepeatedOption(command, "--hide", filter.hide, "Leave this out, named as above; may be repeated", "NAME"));
}

void AddIdOption(CLI::App& command, std::vector<std::string>& ids)
{
    AddRepeatedOption(command, "--id", ids, "Begin a walk at this id, too; may be repeated", "ID");
}

CLI::Option& AddRepeatedOption(CLI::App& command, std::string const& name, std::vector<std::string>& texts,
                               std::string const& description, std::string const& typeName)
{
    return *command.add_option(name, texts, description)
                ->type_name(typeName)
                ->expected(1)
                ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace KVR
