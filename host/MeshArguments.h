#pragma once

#include <optional>
#include <string>

#include "scene/MeshQuality.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// How finely bodies are meshed: the options of all commands that do so.
class MeshArguments
{
public:
    /// Declares the options; this must outlive the command.
    void AddTo(CLI::App& command);

    /// What the arguments say, once they have been parsed. Throws ArgumentError for what cannot stand together.
    MeshQuality Quality() const;

private:
    std::string m_deflection = "0.1%";
    std::optional<double> m_angle;
    bool m_isRelative = false;
};

}  // namespace KVR
