#include "host/notes/Notes.h"

#include <deque>
#include <memory>
#include <unordered_set>

#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IProducer.h"
#include "framework/api/ObjectVisitor.h"
#include "host/dump/References.h"
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

// The walk of a dump, of which the callouts alone are written.
class Walk
{
public:
    Walk(IProducer& producer, NoteWriter& writer) : m_producer(producer), m_writer(writer) {}

    void From(UTF8String const& id)
    {
        Reach(id);
        std::vector<UTF8String> references;
        for (; !m_queue.empty(); m_queue.pop_front())
        {
            IObject* const object = m_producer.Load(m_queue.front());
            if (!object)
                continue;
            CalloutVisitor visitor;
            object->AcceptVisitor(&visitor);
            if (visitor.Callout())
                m_writer.Write(SceneNote::Of(m_producer, *visitor.Callout()));
            references.clear();
            CollectReferences(*object, references);
            for (UTF8String const& reference : references)
                Reach(reference);
        }
    }

private:
    void Reach(UTF8String const& id)
    {
        if (m_reached.insert(id).second)
            m_queue.push_back(id);
    }

    IProducer& m_producer;
    NoteWriter& m_writer;
    std::unordered_set<UTF8String> m_reached;
    std::deque<UTF8String> m_queue;
};

}  // namespace

void WriteNotes(IProducer& producer, std::vector<UTF8String> const& ids, NotesOptions const& options, Output& out)
{
    std::unique_ptr<NoteWriter> writer;
    if (options.json)
        writer = std::make_unique<JsonNoteWriter>(out);
    else
        writer = std::make_unique<TextNoteWriter>(out, options.color);
    Walk walk(producer, *writer);
    for (UTF8String const& id : ids)
        walk.From(id);
    writer->Finish();
}

}  // namespace KVR
