#pragma once

#include "host/PaintedText.h"
#include "host/notes/NoteWriter.h"
#include "scene/SceneNote.h"

namespace KVR
{

class Output;
struct NotesOptions;

/// A paragraph per note, its first line the text and the values; then its plane and what it points at.
class TextNoteWriter final : public NoteWriter
{
public:
    TextNoteWriter(Output& out, NotesOptions const& options);

    void Write(SceneNote const& note) override;
    void Finish() override;

private:
    void PutObject(SceneObjectRef const& object);
    void PutLead(SceneNote const& note);
    void PutLine(SceneNote::Line const& line);
    void PutPlane(SceneNote::Plane const& plane);
    void PutTargets(SceneNote const& note);

    Output& m_out;
    PaintedText m_text;
    bool m_withCurves;
    unsigned long long m_count = 0;
};

}  // namespace KVR
