#pragma once

#include <string>

#include "exchange/ImportModel.h"
#include "host/LengthUnitOption.h"
#include "host/MeshArguments.h"

namespace CLI
{
class App;
}

namespace KVR
{

/// How a scene is made of a model: the options of each command that does so.
class ImportArguments
{
public:
    /// Declares the options; this must outlive the command.
    void AddTo(CLI::App& command);

    /// What the arguments say, once they have been parsed.
    ImportOptions Options(MeshArguments const& meshing) const;

private:
    ImportOptions m_options;
    LengthUnitOption m_unit{ImportOptions().unit};
    std::string m_up;
    bool m_withoutMeshes = false;
    bool m_withoutBreps = false;
    bool m_withoutNotes = false;
};

}  // namespace KVR
