#include "host/notes/Notes.h"

#include <memory>

#include "describe/ReferenceWalk.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IProducer.h"
#include "framework/api/ObjectVisitor.h"
#include "host/notes/JsonNoteWriter.h"
#include "host/notes/NotesOptions.h"
#include "host/notes/TextNoteWriter.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

class CalloutVisitor final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;
    void Visit(IAnnotationCallout* callout) override { m_callout = callout; }

    IAnnotationCallout const* Callout() const { return m_callout; }

private:
    IAnnotationCallout const* m_callout = nullptr;
};

}  // namespace

void WriteNotes(IProducer& producer, std::vector<UTF8String> const& ids, NotesOptions const& options, Output& out)
{
    std::unique_ptr<NoteWriter> writer;
    if (options.json)
        writer = std::make_unique<JsonNoteWriter>(out);
    else
        writer = std::make_unique<TextNoteWriter>(out, options);
    ReferenceWalk walk(producer);
    for (UTF8String const& id : ids)
    {
        walk.Reach(id);
        while (walk.Next())
        {
            CalloutVisitor visitor;
            if (walk.Object())
                walk.Object()->AcceptVisitor(&visitor);
            if (visitor.Callout())
                writer->Write(SceneNote::Of(producer, *visitor.Callout()));
        }
    }
    writer->Finish();
}

}  // namespace KVR
