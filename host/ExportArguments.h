#pragma once

#include "exchange/ExportScene.h"
#include "host/LengthUnitOption.h"
#include "host/MeshArguments.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// How a scene is written for other programs: the options of each command that does so.
class ExportArguments
{
public:
    /// Declares the options; this must outlive the command.
    void AddTo(CLI::App& command);

    /// What the arguments say, once they have been parsed.
    ExportOptions Options(MeshArguments const& meshing) const;

private:
    ExportOptions m_options;
    LengthUnitOption m_unit;
};

/// What is wrong with the path of a file to be written, which names its format; empty for nothing.
std::string ProblemOfTarget(std::string const& path);

}  // namespace KVR
