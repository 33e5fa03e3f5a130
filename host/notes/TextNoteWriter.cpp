#include "host/notes/TextNoteWriter.h"

#include <fmt/format.h>

#include "host/TextValues.h"
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

TextNoteWriter::TextNoteWriter(Output& out, bool color) : m_out(out), m_text(out, color) {}

void TextNoteWriter::PutObject(SceneObjectRef const& object)
{
    m_text.PutObject(object.kind, UTF8String(object.label).View(), object.id.View());
}

void TextNoteWriter::PutLine(SceneNote::Line const& line)
{
    m_out.Put("    ");
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
    m_out.Put('\n');
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
        for (SceneObjectRef const& part : target.parts)
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
    m_text.PutObject("IAnnotationCallout", UTF8String(note.label).View(), note.id.View());
    m_text.PutVisibility(note.isVisible, "\n");
    if (note.text)
    {
        m_out.Put("  text:\n");
        for (SceneNote::Line const& line : *note.text)
            PutLine(line);
    }
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
