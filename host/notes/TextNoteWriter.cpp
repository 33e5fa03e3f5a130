#include "host/notes/TextNoteWriter.h"

#include <fmt/format.h>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::string_view kKindColor = "36";
constexpr std::string_view kIdColor = "2";
constexpr std::string_view kHiddenColor = "33";
constexpr std::string_view kBold = "1";
constexpr std::string_view kItalic = "3";
constexpr std::string_view kPlain = "0";

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

TextNoteWriter::TextNoteWriter(Output& out, bool color) : m_out(out), m_color(color) {}

void TextNoteWriter::Paint(std::string_view code)
{
    if (m_color)
        m_out.Put(fmt::format("\x1b[{}m", code));
}

void TextNoteWriter::PutObject(std::string_view kind, UTF16String const& label, UTF8String const& id)
{
    Paint(kKindColor);
    m_out.Put(kind);
    Paint(kPlain);
    m_out.Put(fmt::format(" \"{}\" ", Escaped(UTF8String(label).View())));
    Paint(kIdColor);
    m_out.Put(Escaped(id.View()));
    Paint(kPlain);
}

void TextNoteWriter::PutLine(SceneNote::Line const& line)
{
    m_out.Put("    ");
    for (SceneNote::Fragment const& fragment : line)
    {
        if (fragment.isBold)
            Paint(kBold);
        if (fragment.isItalic)
            Paint(kItalic);
        PutFreeText(m_out, fragment.text);
        if (fragment.isBold || fragment.isItalic)
            Paint(kPlain);
    }
    m_out.Put('\n');
}

void TextNoteWriter::PutPlane(SceneNote::Plane const& plane)
{
    m_out.Put("  plane: ");
    PutObject(plane.object.kind, plane.object.label, plane.object.id);
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
        PutObject(target.object.kind, target.object.label, target.object.id);
        m_out.Put('\n');
        for (SceneObjectRef const& part : target.parts)
        {
            m_out.Put("      ");
            PutObject(part.kind, part.label, part.id);
            m_out.Put('\n');
        }
    }
}

void TextNoteWriter::Write(SceneNote const& note)
{
    ++m_count;
    PutObject("IAnnotationCallout", note.label, note.id);
    Paint(note.isVisible ? kPlain : kHiddenColor);
    m_out.Put(note.isVisible ? ", visible\n" : ", hidden\n");
    Paint(kPlain);
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
    m_out.Put(fmt::format("{} {}\n", m_count, m_count == 1 ? "note" : "notes"));
}

}  // namespace KVR
