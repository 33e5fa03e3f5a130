#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "framework/api/UTF8String.h"

namespace KVR
{

class IObject;
class IProducer;

/// Appends the ids that an object names: its children, then single objects, its sets of ids, and the sets in its lists,
/// each in the order of its table. Ids of properties, and those in occurrence paths, are no references to objects.
void CollectReferences(IObject& object, std::vector<UTF8String>& ids);

/// Every object that is reached from some ids over references, each once, in the order in which it was reached. Not
/// recursive: any depth will do.
///
///     ReferenceWalk walk(producer);
///     walk.Reach(rootId);
///     while (walk.Next())
///         Use(walk.Id(), walk.Object());
class ReferenceWalk
{
public:
    explicit ReferenceWalk(IProducer& producer);
    ~ReferenceWalk();
    ReferenceWalk(ReferenceWalk const&) = delete;
    ReferenceWalk& operator=(ReferenceWalk const&) = delete;

    /// Appends an id to go to, unless it was reached before; also between two steps.
    void Reach(UTF8String id);
    /// Goes to the next id; false when there is none. What the object before names counts as reached by then.
    bool Next();

    UTF8String const& Id() const { return m_stop.id; }
    /// Null for an id that the producer does not find.
    IObject* Object() const { return m_stop.object; }

private:
    struct Stop
    {
        UTF8String id;
        IObject* object;
    };

    struct Reached;

    void Reach(UTF8String id, IObject* object);

    IProducer& m_producer;
    Stop m_stop{{}, nullptr};
    std::deque<Stop> m_queue;
    std::unique_ptr<Reached> m_reached;
};

}  // namespace KVR
