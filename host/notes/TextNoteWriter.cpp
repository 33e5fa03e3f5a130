#include "host/notes/TextNoteWriter.h"

#include <fmt/format.h>

#include "host/TextValues.h"
#include "host/notes/NoteDetails.h"
#include "host/notes/NotesOptions.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// Text that stands by itself: quotation marks and backslashes do no harm there and are shown as they are.
void PutFreeText(Output& out, std::string_view text)
{
    for (;;)
    {
        auto const at = text.find_first_of("\"\\");
        PutEscaped(out, text.substr(0, at));
        if (at == std::string_view::npos)
            return;
        out.Put(text[at]);
        text.remove_prefix(at + 1);
    }
}

std::string TripleText(std::string_view name, std::optional<SceneNote::Triple> const& triple)
{
    return triple ? fmt::format(", {} {} {} {}", name, (*triple)[0], (*triple)[1], (*triple)[2]) : std::string();
}

}  // namespace

TextNoteWriter::TextNoteWriter(Output& out, NotesOptions const& options)
    : m_out(out), m_text(out, options.color), m_withCurves(options.withCurves)
{
}

void TextNoteWriter::PutObject(SceneObjectRef const& object)
{
    m_text.PutObject(object.kind, UTF8String(object.label).View(), object.id.View());
}

void TextNoteWriter::PutLine(SceneNote::Line const& line)
{
    for (SceneNote::Fragment const& fragment : line)
    {
        if (fragment.isBold)
            m_text.Paint(PaintedText::kBold);
        if (fragment.isItalic)
            m_text.Paint(PaintedText::kItalic);
        PutFreeText(m_out, fragment.text);
        if (fragment.isBold || fragment.isItalic)
            m_text.Paint(PaintedText::kPlain);
    }
}

// The text, its lines behind one another, and the values.
void TextNoteWriter::PutLead(SceneNote const& note)
{
    std::string const values = ValuesOf(note);
    if (note.text)
        for (SceneNote::Line const& line : *note.text)
        {
            if (&line != &note.text->front())
                m_out.Put(" / ");
            PutLine(line);
        }
    if (note.text && !values.empty())
        m_out.Put(' ');
    PutFreeText(m_out, values);
    if (note.text || !values.empty())
        m_out.Put(": ");
}

void TextNoteWriter::PutPlane(SceneNote::Plane const& plane)
{
    m_out.Put("  plane: ");
    PutObject(plane.object);
    m_out.Put(TripleText("origin", plane.origin));
    m_out.Put(TripleText("normal", plane.normal));
    m_out.Put(TripleText("reference", plane.reference));
    m_out.Put('\n');
}

void TextNoteWriter::PutTargets(SceneNote const& note)
{
    m_out.Put("  points at:\n");
    for (SceneNote::Target const& target : note.targets)
    {
        m_out.Put("    ");
        PutObject(target.object);
        m_out.Put('\n');
        for (SceneObjectRef const& part : m_withCurves ? target.parts : std::vector<SceneObjectRef>())
        {
            m_out.Put("      ");
            PutObject(part);
            m_out.Put('\n');
        }
    }
}

void TextNoteWriter::Write(SceneNote const& note)
{
    ++m_count;
    PutLead(note);
    m_text.PutObject("IAnnotationCallout", UTF8String(note.label).View(), note.id.View());
    m_text.PutVisibility(note.isVisible, "\n");
    if (note.plane)
        PutPlane(*note.plane);
    if (!note.targets.empty())
        PutTargets(note);
}

void TextNoteWriter::Finish()
{
    m_out.Put(Counted(m_count, "note", "notes") + "\n");
}

}  // namespace KVR
