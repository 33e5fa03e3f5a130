#pragma once

namespace KVR
{

struct SceneNote;

/// Takes the notes one by one, as the walk finds them. Every operation may throw OutputError.
class NoteWriter
{
public:
    virtual ~NoteWriter() = default;
    virtual void Write(SceneNote const& note) = 0;
    /// Ends the output with the number of notes.
    virtual void Finish() = 0;

protected:
    NoteWriter() = default;
    NoteWriter(NoteWriter const&) = default;
    NoteWriter& operator=(NoteWriter const&) = default;
};

}  // namespace KVR
