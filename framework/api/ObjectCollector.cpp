#include "framework/api/ObjectCollector.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/api/LargePages.h"
#include "framework/api/Subscript.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

// The objects in the order in which they came. A list in blocks, so that growing moves none.
class ObjectList
{
public:
    std::unique_ptr<IObject>& operator[](std::uint32_t at) { return m_blocks[at / kBlockSize][at % kBlockSize]; }
    std::uint32_t Size() const { return m_size; }

    // Makes room for one more.
    void Reserve()
    {
        if (m_size < m_blocks.size() * kBlockSize)
            return;
        std::vector<std::unique_ptr<IObject>> block;
        block.reserve(kBlockSize);
        m_blocks.push_back(std::move(block));
    }
    // Takes no memory.
    void Append(std::unique_ptr<IObject> object) noexcept
    {
        m_blocks[m_size / kBlockSize].push_back(std::move(object));
        ++m_size;
    }

private:
    static constexpr std::uint32_t kBlockSize = 1024;

    std::vector<std::vector<std::unique_ptr<IObject>>> m_blocks;
    std::uint32_t m_size = 0;
};

// An id as numbers: both ends of its text, which lie over each other, and its size. No two short ids agree in all
// three. Of a long one the first number is a hash of all of it.
struct IdKey
{
    static constexpr std::size_t kMostShort = 16;
    static constexpr std::uint32_t kLong = 0xFFFFFFFEU;
    static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::uint32_t size = kNone;

    IdKey() = default;
    explicit IdKey(std::string_view id)
    {
        size = id.size() > kMostShort ? kLong : static_cast<std::uint32_t>(id.size());
        if (size == kLong)
            first = std::hash<std::string_view>()(id);
        else if (size >= sizeof(std::uint64_t))
            SetEnds<std::uint64_t>(id);
        else if (size >= sizeof(std::uint32_t))
            SetEnds<std::uint32_t>(id);
        else if (size > 0)
        {
            SetEnds<unsigned char>(id);
            first |= std::uint64_t{static_cast<unsigned char>(id[size / 2])} << 8U;
        }
    }

    bool operator==(IdKey const& other) const
    {
        // One comparison: where a processor that waits for memory has to guess more often, it guesses wrong more often.
        return ((first ^ other.first) | (second ^ other.second) | (size ^ other.size)) == 0;
    }

private:
    template <class End>
    void SetEnds(std::string_view id)
    {
        End begin{};
        End end{};
        std::memcpy(&begin, id.data(), sizeof begin);
        std::memcpy(&end, id.data() + (id.size() - sizeof end), sizeof end);
        first = begin;
        second = end;
    }
};

// What is known of an id, in half a cache line: with a million objects each line that a look-up has to wait for takes
// as long as all else. So a short id stands here itself, beside its object, and nothing else is visited.
struct alignas(32) Slot
{
    // Null once disposed of.
    IObject* object = nullptr;
    // Of a long id the second number is where it stands among the long ones. The slot of no id is free.
    [[no_unique_address]] IdKey key;
    // Where the first object of the id stands in the list.
    std::uint32_t place = 0;
};

static_assert(sizeof(Slot) == 32);

struct FreeSlots
{
    std::align_val_t alignment{alignof(Slot)};
    void operator()(Slot* slots) const noexcept { ::operator delete(slots, alignment); }
};

// An open-addressed table of slots, at most half full. An id is looked for in the two slots of a cache line, and then
// in those of the lines behind it. A large table stands in large pages, since a look-up at random would otherwise wait
// for the page's address, too.
class SlotTable
{
public:
    Slot* Find(std::string_view id) const
    {
        if (!m_slots)
            return nullptr;
        IdKey const key(id);
        if (key.size == IdKey::kLong)
            return FindLong(key, id);
        for (std::size_t i = HomeOf(key);; i = (i + 2) & m_mask)
        {
            Slot* const pair = m_slots.get() + i;
            Slot* const slot = pair + static_cast<std::size_t>(pair[1].key == key);
            if (slot->key == key)
                return slot;
            if (pair[1].key.size == IdKey::kNone)
                return nullptr;
        }
    }

    // Makes room for one more.
    void Reserve()
    {
        std::size_t const size = m_slots ? m_mask + 1 : 0;
        if (2 * (m_count + 1) <= size)
            return;
        Slots const former = std::exchange(m_slots, NewSlots(std::max(2 * size, kLeastSize)));
        m_mask = std::max(2 * size, kLeastSize) - 1;
        for (std::size_t i = 0; i < size; ++i)
        {
            if (former.get()[i].key.size != IdKey::kNone)
                Place(former.get()[i]);
        }
    }

    // Enters an id that is not there. Room was made.
    void Add(std::string_view id, IObject* object, std::uint32_t place)
    {
        Slot slot;
        slot.object = object;
        slot.key = IdKey(id);
        slot.place = place;
        if (slot.key.size == IdKey::kLong)
        {
            slot.key.second = m_longIds.size();
            m_longIds.emplace_back(id);
        }
        Place(slot);
        ++m_count;
    }

    // A new table would take memory for its list.
    void Clear() noexcept
    {
        m_slots.reset();
        m_mask = m_count = 0;
        m_longIds.clear();
    }

private:
    static constexpr std::size_t kLeastSize = 64;

    using Slots = std::unique_ptr<Slot, FreeSlots>;

    static Slots NewSlots(std::size_t count)
    {
        std::align_val_t const alignment{count * sizeof(Slot) < kLargePage ? 2 * sizeof(Slot) : kLargePage};
        void* const memory = ::operator new(count * sizeof(Slot), alignment);
        AdviseLargePages(memory, count * sizeof(Slot));
        auto* const slots = static_cast<Slot*>(memory);
        std::uninitialized_value_construct_n(slots, count);
        return {slots, FreeSlots{alignment}};
    }

    // The first of the two slots that an id stands in if there is room.
    std::size_t HomeOf(IdKey const& key) const
    {
        std::uint64_t hash = key.first * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32U;
        if (key.size != IdKey::kLong)
        {
            std::uint64_t const end = (key.second + key.size) * 0xC2B2AE3D27D4EB4FU;
            hash += end ^ end >> 32U;
        }
        hash *= 0xD6E8FEB86659FD93U;
        return (hash ^ hash >> 32U) & m_mask & ~std::uint64_t{1};
    }

    Slot* FindLong(IdKey const& key, std::string_view id) const
    {
        for (std::size_t i = HomeOf(key);; i = (i + 1) & m_mask)
        {
            Slot& slot = m_slots.get()[i];
            if (slot.key.size == IdKey::kNone)
                return nullptr;
            if (slot.key.size == IdKey::kLong && slot.key.first == key.first && m_longIds[slot.key.second] == id)
                return &slot;
        }
    }

    void Place(Slot const& slot) noexcept
    {
        std::size_t i = HomeOf(slot.key);
        while (m_slots.get()[i].key.size != IdKey::kNone)
            i = (i + 1) & m_mask;
        m_slots.get()[i] = slot;
    }

    Slots m_slots;
    std::size_t m_mask = 0;
    std::size_t m_count = 0;
    // The texts of long ids.
    std::deque<std::string> m_longIds;
};

}  // namespace

struct ObjectCollector::Registry
{
    ObjectList objects;
    SlotTable slots;
    // Of an id that several objects have, the places of those behind the first.
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> further;

    Slot* Find(std::string_view id) const { return slots.Find(id); }

    void Add(std::unique_ptr<IObject> object)
    {
        UTF8String const id = object->Id();
        Slot* const first = Find(id.View());
        if (first && !first->object)
        {
            first->object = object.get();
            objects[first->place] = std::move(object);
            return;
        }
        std::uint32_t const place = objects.Size();
        objects.Reserve();
        if (first)
        {
            further[first->place].push_back(place);
            objects.Append(std::move(object));
            return;
        }
        slots.Reserve();
        slots.Add(id.View(), object.get(), place);
        objects.Append(std::move(object));
    }

    bool Dispose(std::string_view id)
    {
        Slot* const first = Find(id);
        if (!first || !first->object)
            return false;
        first->object = nullptr;
        objects[first->place].reset();
        if (auto const others = further.find(first->place); others != further.end())
        {
            for (std::uint32_t const at : others->second)
                objects[at].reset();
            further.erase(others);
        }
        return true;
    }
};

ObjectCollector::ObjectCollector() : m_registry(std::make_unique<Registry>()) {}
ObjectCollector::~ObjectCollector()
{
    Destroy();
}

bool ObjectCollector::Dispose(UTF8String const& id)
{
    return m_registry->Dispose(id.View());
}

void ObjectCollector::AddObject(IObject* object)
{
    if (object)
        m_registry->Add(std::unique_ptr<IObject>(object));
}

IObject* ObjectCollector::QueryObject(UTF8String const& id) const
{
    Slot const* const first = m_registry->Find(id.View());
    return first ? first->object : nullptr;
}

bool ObjectCollector::HasObject(UTF8String const& id) const
{
    return QueryObject(id) != nullptr;
}

void ObjectCollector::Destroy() noexcept
{
    m_registry->slots.Clear();
    for (std::uint32_t at = 0; at < m_registry->objects.Size(); ++at)
        m_registry->objects[at].reset();
    m_registry->objects = ObjectList();
    m_registry->further.clear();
}

}  // namespace KVR
