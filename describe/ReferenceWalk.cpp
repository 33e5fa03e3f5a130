#include "describe/ReferenceWalk.h"

#include <array>
#include <bit>
#include <cstdint>
#include <unordered_set>
#include <utility>

#include "describe/SilentAnswers.h"
#include "describe/Tables.h"
#include "framework/api/IProducer.h"

namespace KVR
{

namespace
{

// Wants the members that refer to objects, and keeps the texts in them, by what the object's own member is.
class Collector final : public SilentAnswers
{
public:
    bool BeginMember(Row const& row) override
    {
        if (row.refers == Refers::Nothing || row.refers == Refers::Elsewhere)
            return false;
        if (m_depth++ == 0)
            m_ids = &m_found[static_cast<std::size_t>(row.refers)];
        return true;
    }
    void EndMember() override { --m_depth; }

    void Text(std::string_view id) override
    {
        // An empty id is what stands where there is no object.
        if (!id.empty())
            m_ids->emplace_back(id);
    }

    /// Hands over what was found, in the order of the table, and begins anew.
    template <class Take>
    void Drain(Take const& take)
    {
        for (std::vector<UTF8String>& found : m_found)
        {
            for (UTF8String& id : found)
                take(std::move(id));
            found.clear();
        }
    }

private:
    // In the order of Refers.
    std::array<std::vector<UTF8String>, static_cast<std::size_t>(Refers::Elsewhere)> m_found;
    std::vector<UTF8String>* m_ids = nullptr;
    unsigned m_depth = 0;
};

void Collect(IObject& object, Collector& collector)
{
    DescribedObject const described = DescribedObject::Of(object);
    if (described.interface)
        TellMembers(*described.interface, described.object, Telling{collector});
}

// Objects, in an open-addressed table that is at most half full. Those that were made one after the other stand near
// one another, and a walk finds most of them so.
class ObjectSet
{
public:
    /// Whether it was not there before.
    bool Add(IObject const* object)
    {
        if (2 * (m_count + 1) > m_places.size())
            Grow();
        IObject const*& place = PlaceOf(object);
        if (place)
            return false;
        place = object;
        ++m_count;
        return true;
    }

private:
    static constexpr std::size_t kLeastSize = 64;

    // Its own, or the empty one in which it belongs.
    IObject const*& PlaceOf(IObject const* object)
    {
        auto const address = std::bit_cast<std::uintptr_t>(object);
        std::size_t const mask = m_places.size() - 1;
        std::size_t i = (address >> 5 ^ address >> 17) & mask;
        while (m_places[i] && m_places[i] != object)
            i = (i + 1) & mask;
        return m_places[i];
    }

    void Grow()
    {
        std::vector<IObject const*> former(m_places.empty() ? kLeastSize : 2 * m_places.size());
        former.swap(m_places);
        for (IObject const* const object : former)
            if (object)
                PlaceOf(object) = object;
    }

    std::vector<IObject const*> m_places;
    std::size_t m_count = 0;
};

}  // namespace

// An object has one id: what was reached is known by the object, and by its id where there is none.
struct ReferenceWalk::Reached
{
    ObjectSet objects;
    std::unordered_set<UTF8String> missing;
    // Kept between steps for its memory.
    Collector collector;
    std::vector<Stop> met;
};

void CollectReferences(IObject& object, std::vector<UTF8String>& ids)
{
    Collector collector;
    Collect(object, collector);
    collector.Drain([&](UTF8String&& id) { ids.push_back(std::move(id)); });
}

ReferenceWalk::ReferenceWalk(IProducer& producer) : m_producer(producer), m_reached(std::make_unique<Reached>()) {}
ReferenceWalk::~ReferenceWalk() = default;

void ReferenceWalk::Reach(UTF8String id)
{
    IObject* const object = m_producer.Load(id);
    Reach(std::move(id), object);
}

void ReferenceWalk::Reach(UTF8String id, IObject* object)
{
    if (object ? m_reached->objects.Add(object) : m_reached->missing.insert(id).second)
        m_queue.push_back({std::move(id), object});
}

bool ReferenceWalk::Next()
{
    if (m_stop.object)
    {
        Collect(*m_stop.object, m_reached->collector);
        m_stop.object = nullptr;
        // In two rounds: each wait for memory begins before those of the ids in front have ended.
        std::vector<Stop>& met = m_reached->met;
        met.clear();
        m_reached->collector.Drain([&](UTF8String&& id) { met.push_back({std::move(id), nullptr}); });
        for (Stop& stop : met)
            stop.object = m_producer.Load(stop.id);
        for (Stop& stop : met)
            Reach(std::move(stop.id), stop.object);
    }
    if (m_queue.empty())
        return false;
    m_stop = std::move(m_queue.front());
    m_queue.pop_front();
    // Objects are met in another order than they were made in: while one is asked, those that follow are on their way.
    constexpr std::size_t kAhead = 4;
    if (m_queue.size() > kAhead)
        __builtin_prefetch(m_queue[kAhead].object);
    return true;
}

}  // namespace KVR
