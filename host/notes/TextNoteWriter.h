#pragma once

#include "host/PaintedText.h"
#include "host/notes/NoteWriter.h"
#include "scene/SceneNote.h"

namespace KVR
{

class Output;

/// A paragraph per note: what it is, its text, its plane and what it points at.
class TextNoteWriter final : public NoteWriter
{
public:
    TextNoteWriter(Output& out, bool color);

    void Write(SceneNote const& note) override;
    void Finish() override;

private:
    void PutObject(SceneObjectRef const& object);
    void PutLine(SceneNote::Line const& line);
    void PutPlane(SceneNote::Plane const& plane);
    void PutTargets(SceneNote const& note);

    Output& m_out;
    PaintedText m_text;
    unsigned long long m_count = 0;
};

}  // namespace KVR
