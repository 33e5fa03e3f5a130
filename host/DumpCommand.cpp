#include "host/DumpCommand.h"

#include <CLI/CLI.hpp>

#include "host/CommonOptions.h"
#include "host/dump/Dump.h"

namespace KVR
{

DumpCommand::DumpCommand(CLI::App& program)
    : SceneCommand(program, "dump", "Print everything that a scene serves, as one JSON object")
{
    AddIdOption(Arguments(), m_options.ids);
    AddRepeatedOption(Arguments(), "--extension", m_options.extensionTypeIds,
                      "Show the extension data of this type id; may be repeated", "TYPEID");
    Arguments().add_flag("--summary", m_options.summary,
                         "Leave out the long lists of meshes and clouds, and keep their counts; leave out the volumes, "
                         "areas and boxes of bodies, too");
    Arguments().add_flag("--mass", m_options.mass, "With --summary: keep the volumes, areas and boxes of bodies");
    AddInsecureOption(Arguments(), Scene());
}

std::string DumpCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    WriteDump(producer, reading, m_options, out);
    return {};
}

}  // namespace KVR
