#pragma once

#include "host/notes/NoteWriter.h"
#include "output/JsonWriter.h"

namespace KVR
{

/// One JSON object with a member "Notes".
class JsonNoteWriter final : public NoteWriter
{
public:
    explicit JsonNoteWriter(Output& out);

    void Write(SceneNote const& note) override;
    void Finish() override;

private:
    JsonWriter m_json;
    unsigned long long m_count = 0;
};

}  // namespace KVR
