#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/source/SceneOptions.h"
#include "scene/SceneFilter.h"

namespace CLI
{
class App;
class Option;
}  // namespace CLI

namespace KVR
{

// Options that several commands have. What they set must outlive the command.

/// Those of all commands that read a scene: its file, and how it is read.
void AddSceneOptions(CLI::App& command, SceneOptions& options);

/// How a scene is read: "--prefix", "--allow-dtd", "--strict" and "--max-memory".
void AddReadingOptions(CLI::App& command, SceneOptions& options);

/// "--allow-dtd".
void AddTrustOption(CLI::App& command, SceneOptions& options);

/// "--insecure".
void AddInsecureOption(CLI::App& command, SceneOptions& options);

/// "--max-memory".
void AddMemoryOption(CLI::App& command, SceneOptions& options);

/// "--timeout".
void AddTimeoutOption(CLI::App& command, std::optional<unsigned>& seconds);

/// "--json".
void AddJsonOption(CLI::App& command, bool& asJson);

/// What of a scene is wanted: "--only" and "--hide". `verb` is what is done with it: "Export".
void AddFilterOptions(CLI::App& command, SceneFilter& filter, std::string const& verb);

/// "--id", where a walk begins besides the root.
void AddIdOption(CLI::App& command, std::vector<std::string>& ids);

/// An option of one text, which may be repeated.
CLI::Option& AddRepeatedOption(CLI::App& command, std::string const& name, std::vector<std::string>& texts,
                               std::string const& description, std::string const& typeName);

}  // namespace KVR
