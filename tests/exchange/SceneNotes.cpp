#include "tests/exchange/SceneNotes.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;

std::string ExtensionOf(json const& object, std::string const& typeId)
{
    for (json const& entry : object.at("ExtensionData"))
        if (entry.at("TypeId") == typeId)
            return entry.at("Data");
    return {};
}

}  // namespace

void PrintTo(SceneNote const& note, std::ostream* out)
{
    *out << note.id << " \"" << note.label << "\" \"" << note.text << "\" " << note.kind << " of " << note.references
         << ' ' << note.details;
}

std::vector<SceneNote> NotesOf(std::string const& scenePath)
{
    ToolRun const run = RunTool({"dump", "--summary", "--extension", "kvr.annotation.kind", "--extension",
                                 "kvr.annotation.references", "--extension", "kvr.annotation.details", scenePath});
    if (run.status != 0)
        throw std::runtime_error(run.error);
    json const dump = json::parse(run.out);
    std::vector<SceneNote> notes;
    for (json const& object : dump.at("Objects"))
    {
        if (!object.is_object() || object.at("Class") != "IAnnotationCallout")
            continue;
        SceneNote note{object.at("Id"),
                       object.at("Label"),
                       {},
                       ExtensionOf(object, "kvr.annotation.kind"),
                       ExtensionOf(object, "kvr.annotation.references"),
                       ExtensionOf(object, "kvr.annotation.details")};
        for (json const& line : object.at("Text").at("Lines"))
            for (json const& fragment : line.at("Fragments"))
                note.text += fragment.at("Value").get<std::string>();
        notes.push_back(std::move(note));
    }
    std::sort(notes.begin(), notes.end(),
              [](SceneNote const& a, SceneNote const& b)
              { return std::make_pair(a.id.size(), a.id) < std::make_pair(b.id.size(), b.id); });
    return notes;
}

}  // namespace KVR::Test
