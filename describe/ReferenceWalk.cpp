#include "describe/ReferenceWalk.h"

#include <array>
#include <iterator>
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

    void MoveTo(std::vector<UTF8String>& ids)
    {
        for (auto& found : m_found)
            ids.insert(ids.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
    }

private:
    // In the order of Refers.
    std::array<std::vector<UTF8String>, static_cast<std::size_t>(Refers::Elsewhere)> m_found;
    std::vector<UTF8String>* m_ids = nullptr;
    unsigned m_depth = 0;
};

}  // namespace

void CollectReferences(IObject& object, std::vector<UTF8String>& ids)
{
    DescribedObject const described = DescribedObject::Of(object);
    if (!described.interface)
        return;
    Collector collector;
    TellMembers(*described.interface, described.object, Telling{collector});
    collector.MoveTo(ids);
}

void ReferenceWalk::Reach(UTF8String id)
{
    IObject* const object = m_producer.Load(id);
    if (object ? m_reached.insert(object).second : m_missing.insert(id).second)
        m_queue.push_back({std::move(id), object});
}

bool ReferenceWalk::Next()
{
    if (m_stop.object)
    {
        m_references.clear();
        CollectReferences(*m_stop.object, m_references);
        for (UTF8String& id : m_references)
            Reach(std::move(id));
        m_stop.object = nullptr;
    }
    if (m_queue.empty())
        return false;
    m_stop = std::move(m_queue.front());
    m_queue.pop_front();
    return true;
}

}  // namespace KVR
