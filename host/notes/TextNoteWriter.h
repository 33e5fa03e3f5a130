#pragma once

#include "host/PaintedText.h"
#include "host/notes/Note.h"
#include "host/notes/NoteWriter.h"

namespace KVR
{

class Output;

/// A paragraph per note: what it is, its text, its plane and what it points at.
class TextNoteWriter final : public NoteWriter
{
public:
    TextNoteWriter(Output& out, bool color);

    void Write(Note const& note) override;
    void Finish() override;

private:
    void PutObject(ProductNode const& object);
    void PutLine(Note::Line const& line);
    void PutPlane(Note::Plane const& plane);
    void PutTargets(Note const& note);

    Output& m_out;
    PaintedText m_text;
    unsigned long long m_count = 0;
};

}  // namespace KVR
