#include "framework/api/ObjectCollector.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <deque>
#include <limits>
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

// What is known of an id, in half a cache line: with a million objects each line that a look-up has to wait for takes
// as long as all else. So a short id stands here itself, beside its object, and nothing else is visited.
struct alignas(32) Slot
{
    static constexpr std::uint32_t kAbsent = 0xFFFFFFFFU;
    static constexpr std::size_t kMostShort = 15;
    static constexpr unsigned char kLong = 0xFF;

    // Null once disposed of.
    IObject* object = nullptr;
    // Where the first object of the id stands in the list.
    std::uint32_t place = kAbsent;
    // It says where the slot belongs in a table of any size, so that growing asks nobody for a hash.
    std::uint32_t tag = 0;
    // The id itself, or for a long one where it stands and its size.
    std::array<char, kMostShort> text{};
    unsigned char length = 0;

    bool Holds(std::string_view id) const
    {
        if (length != kLong)
            return id.size() == length && std::memcmp(text.data(), id.data(), length) == 0;
        return id == LongId();
    }
    void SetShort(std::string_view id)
    {
        length = static_cast<unsigned char>(id.size());
        std::copy(id.begin(), id.end(), text.begin());
    }
    void SetLong(std::string const& id)
    {
        length = kLong;
        char const* const data = id.data();
        auto const size = static_cast<std::uint32_t>(id.size());
        std::memcpy(text.data(), &data, sizeof data);
        std::memcpy(text.data() + sizeof data, &size, sizeof size);
    }
    std::string_view LongId() const
    {
        char const* data = nullptr;
        std::uint32_t size = 0;
        std::memcpy(&data, text.data(), sizeof data);
        std::memcpy(&size, text.data() + sizeof data, sizeof size);
        return {data, size};
    }
};

static_assert(sizeof(Slot) == 32);

struct FreeSlots
{
    std::align_val_t alignment{alignof(Slot)};
    void operator()(Slot* slots) const noexcept { ::operator delete(slots, alignment); }
};

// An open-addressed table of slots, at most half full. A large one stands in large pages, since a look-up at random
// would otherwise wait for the page's address, too.
class SlotTable
{
public:
    Slot* Find(std::string_view id, std::uint32_t tag) const
    {
        if (!m_slots)
            return nullptr;
        for (std::size_t i = tag & m_mask;; i = (i + 1) & m_mask)
        {
            Slot& slot = m_slots.get()[i];
            if (slot.place == Slot::kAbsent)
                return nullptr;
            if (slot.tag == tag && slot.Holds(id))
                return &slot;
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
            if (former.get()[i].place != Slot::kAbsent)
                Place(former.get()[i]);
        }
    }

    // Takes no memory.
    void Add(Slot const& slot) noexcept
    {
        Place(slot);
        ++m_count;
    }

private:
    static constexpr std::size_t kLeastSize = 64;

    using Slots = std::unique_ptr<Slot, FreeSlots>;

    static Slots NewSlots(std::size_t count)
    {
        std::align_val_t const alignment{count * sizeof(Slot) < kLargePage ? alignof(Slot) : kLargePage};
        void* const memory = ::operator new(count * sizeof(Slot), alignment);
        AdviseLargePages(memory, count * sizeof(Slot));
        auto* const slots = static_cast<Slot*>(memory);
        std::uninitialized_value_construct_n(slots, count);
        return {slots, FreeSlots{alignment}};
    }

    void Place(Slot const& slot) noexcept
    {
        std::size_t i = slot.tag & m_mask;
        while (m_slots.get()[i].place != Slot::kAbsent)
            i = (i + 1) & m_mask;
        m_slots.get()[i] = slot;
    }

    Slots m_slots;
    std::size_t m_mask = 0;
    std::size_t m_count = 0;
};

}  // namespace

struct ObjectCollector::Registry
{
    ObjectList objects;
    SlotTable slots;
    // The texts of long ids, which do not move.
    std::deque<std::string> longIds;
    // Of an id that several objects have, the places of those behind the first.
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> further;

    static std::uint32_t TagOf(std::string_view id)
    {
        std::uint64_t const hash = std::hash<std::string_view>()(id);
        return static_cast<std::uint32_t>(hash ^ hash >> 32);
    }

    Slot* Find(std::string_view id) const { return slots.Find(id, TagOf(id)); }

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
        Slot slot;
        if (id.Size() > std::numeric_limits<std::uint32_t>::max())
            ThrowTooLong();
        if (id.Size() <= Slot::kMostShort)
            slot.SetShort(id.View());
        else
            slot.SetLong(longIds.emplace_back(id.View()));
        slot.object = object.get();
        slot.place = place;
        slot.tag = TagOf(id.View());
        slots.Add(slot);
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

void ObjectCollector::Visit(IGenericObject* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IView* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICamera* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAssemblyFeatureOverride* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAnnotationCalloutElement* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAnnotationCallout* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IMaterialTexture* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IExtensionGeometry* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPointCloud* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ILod* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPolygonMesh* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICoordSys* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkPlane* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkAxis* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IWorkPoint* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ISketch* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ICurve* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPoint* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IRenderStyle* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IGroup* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IInstance* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IAssembly* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IFile* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IPart* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IGeometricSet* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(ILayer* object)
{
    AddObject(object);
}
void ObjectCollector::Visit(IBrep* object)
{
    AddObject(object);
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
    m_registry->slots = SlotTable();
    for (std::uint32_t at = 0; at < m_registry->objects.Size(); ++at)
        m_registry->objects[at].reset();
    m_registry->objects = ObjectList();
    m_registry->longIds.clear();
    m_registry->further.clear();
}

}  // namespace KVR
