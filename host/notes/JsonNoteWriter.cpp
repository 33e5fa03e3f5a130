#include "host/notes/JsonNoteWriter.h"

#include <array>
#include <string>

#include "describe/JsonAnswers.h"
#include "host/ObjectJson.h"
#include "host/notes/NoteDetails.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

void WriteIdentity(JsonWriter& json, SceneObjectRef const& object)
{
    WriteIdentity(json, object.kind, UTF8String(object.label).View(), object.id.View());
}

void WriteText(JsonWriter& json, SceneNote const& note)
{
    if (!note.text)
        return json.Null();
    std::string text;
    for (SceneNote::Line const& line : *note.text)
    {
        if (&line != &note.text->front())
            text += '\n';
        text += SceneNote::Joined(line);
    }
    json.String(text);
}

void WriteTriple(JsonWriter& json, std::string_view name, std::optional<SceneNote::Triple> const& triple)
{
    json.Key(name);
    if (triple)
        WriteValue(json, std::array{(*triple)[0], (*triple)[1], (*triple)[2]});
    else
        json.Null();
}

void WritePlane(JsonWriter& json, SceneNote const& note)
{
    if (!note.plane)
        return json.Null();
    json.BeginObject();
    WriteIdentity(json, note.plane->object);
    WriteTriple(json, "Origin", note.plane->origin);
    WriteTriple(json, "Normal", note.plane->normal);
    WriteTriple(json, "Reference", note.plane->reference);
    json.EndObject();
}

void WriteTarget(JsonWriter& json, SceneNote::Target const& target)
{
    json.BeginObject();
    WriteIdentity(json, target.object);
    json.Key("Children");
    json.BeginList();
    for (SceneObjectRef const& part : target.parts)
    {
        json.BeginObject(JsonWriter::Layout::Row);
        WriteIdentity(json, part);
        json.EndObject();
    }
    json.EndList();
    json.EndObject();
}

}  // namespace

JsonNoteWriter::JsonNoteWriter(Output& out) : m_json(out)
{
    m_json.BeginObject();
    m_json.Key("Notes");
    m_json.BeginList();
}

void JsonNoteWriter::Write(SceneNote const& note)
{
    ++m_count;
    m_json.BeginObject();
    m_json.Key("Id");
    WriteValue(m_json, note.id);
    m_json.Key("Label");
    WriteValue(m_json, note.label);
    m_json.Key("Visible");
    m_json.Bool(note.isVisible);
    m_json.Key("Text");
    WriteText(m_json, note);
    m_json.Key("Kind");
    if (note.kind.empty())
        m_json.Null();
    else
        m_json.String(note.kind);
    m_json.Key("Details");
    WriteDetails(m_json, note);
    m_json.Key("Plane");
    WritePlane(m_json, note);
    m_json.Key("PointsAt");
    m_json.BeginList();
    for (SceneNote::Target const& target : note.targets)
        WriteTarget(m_json, target);
    m_json.EndList();
    m_json.EndObject();
}

void JsonNoteWriter::Finish()
{
    m_json.EndList();
    m_json.Key("NoteCount");
    m_json.Unsigned(m_count);
    m_json.EndObject();
    m_json.EndDocument();
}

}  // namespace KVR
