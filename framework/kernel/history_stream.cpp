#include "framework/kernel/history_stream.h"

#include <algorithm>
#include <mutex>
#include <unordered_set>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"

namespace KVR
{

namespace
{

// All streams there are. Threads share it, as they may hand streams on.
struct Registry
{
    std::mutex mutex;
    std::unordered_set<HISTORY_STREAM const*> streams;
};

Registry& AllStreams()
{
    // It outlives whatever ends streams at the program's end.
    static Registry& registry = *new Registry;
    return registry;
}

}  // namespace

HISTORY_STREAM::HISTORY_STREAM()
{
    Registry& registry = AllStreams();
    std::lock_guard const lock(registry.mutex);
    registry.streams.insert(this);
}

HISTORY_STREAM::~HISTORY_STREAM()
{
    Clear();
    {
        Registry& registry = AllStreams();
        std::lock_guard const lock(registry.mutex);
        registry.streams.erase(this);
    }
    GLOBAL_DATA& data = gki_global_data();
    if (data.activeStream == this)
        data.activeStream = nullptr;
}

void HISTORY_STREAM::Add(ENTITY* entity)
{
    if (entity->m_stream == this)
        return;
    m_entities.push_back(entity);
    if (entity->m_stream)
        entity->m_stream->Remove(entity);
    entity->m_stream = this;
    entity->m_place = m_entities.size() - 1;
}

void HISTORY_STREAM::Remove(ENTITY* entity) noexcept
{
    if (entity->m_stream != this)
        return;
    // The last one takes the place.
    ENTITY* const last = m_entities.back();
    m_entities[entity->m_place] = last;
    last->m_place = entity->m_place;
    m_entities.pop_back();
    entity->m_stream = nullptr;
}

HISTORY_STREAM* HISTORY_STREAM::Split()
{
    m_streams.push_back(std::make_unique<HISTORY_STREAM>());
    return m_streams.back().get();
}

void HISTORY_STREAM::Clear() noexcept
{
    // An entity takes itself out when it ends.
    while (!m_entities.empty())
        delete m_entities.back();
    m_curves.clear();
    m_streams.clear();
}

std::size_t HISTORY_STREAM::EntityCount() const noexcept
{
    std::size_t count = m_entities.size();
    for (auto const& stream : m_streams)
        count += stream->EntityCount();
    return count;
}

std::size_t HISTORY_STREAM::CurveCount() const noexcept
{
    auto count = static_cast<std::size_t>(std::count_if(
        m_curves.begin(), m_curves.end(), [](std::unique_ptr<curve> const& held) { return !held->IsDestroyed(); }));
    for (auto const& stream : m_streams)
        count += stream->CurveCount();
    return count;
}

std::size_t HISTORY_STREAM::StreamCount() const noexcept
{
    std::size_t count = m_streams.size();
    for (auto const& stream : m_streams)
        count += stream->StreamCount();
    return count;
}

bool gki_is_history_stream(HISTORY_STREAM const* stream)
{
    Registry& registry = AllStreams();
    std::lock_guard const lock(registry.mutex);
    return registry.streams.contains(stream);
}

}  // namespace KVR
