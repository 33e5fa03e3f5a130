#include "host/NotesCommand.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "exchange/source/SceneReading.h"
#include "framework/api/UTF8String.h"
#include "host/CommonOptions.h"
#include "host/notes/Notes.h"

namespace KVR
{

NotesCommand::NotesCommand(CLI::App& program)
    : SceneCommand(program, "notes",
                   "Show the annotation callouts: their text, the plane that they lie in, and what they point at")
{
    AddIdOption(Arguments(), m_options.ids);
    AddJsonOption(Arguments(), m_options.json);
    Arguments().add_flag("--curves", m_options.withCurves, "Show what elements of notes are drawn with");
    m_color.AddTo(Arguments());
}

std::string NotesCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    std::vector<UTF8String> starts;
    if (reading.rootId)
        starts.push_back(*reading.rootId);
    for (std::string const& id : m_options.ids)
        starts.emplace_back(id.c_str());
    if (starts.empty())
        return OfScene("the scene has no root file to begin at; --id begins at another object");
    m_options.color = m_color.IsWanted();
    WriteNotes(producer, starts, m_options, out);
    return {};
}

}  // namespace KVR
