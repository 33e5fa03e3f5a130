#include "framework/api/ObjectCollector.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

struct Entry
{
    std::string id;
    std::unique_ptr<IObject> object;
    std::uint32_t next = UniqueIndex::kAbsent;
    std::uint32_t last = UniqueIndex::kAbsent;
};

// A list in blocks, so that growing moves no entry. They are large, so that the way to an entry leads over few of them.
class EntryList
{
public:
    Entry& operator[](std::uint32_t at) { return m_blocks[at / kBlockSize][at % kBlockSize]; }
    Entry const& operator[](std::uint32_t at) const { return m_blocks[at / kBlockSize][at % kBlockSize]; }
    std::uint32_t Size() const { return m_size; }

    void Append(Entry entry)
    {
        if (m_size == m_blocks.size() * kBlockSize)
            m_blocks.emplace_back().reserve(kBlockSize);
        m_blocks[m_size / kBlockSize].push_back(std::move(entry));
        ++m_size;
    }
    void DropLast()
    {
        --m_size;
        m_blocks[m_size / kBlockSize].pop_back();
    }

private:
    static constexpr std::uint32_t kBlockSize = 1024;

    std::vector<std::vector<Entry>> m_blocks;
    std::uint32_t m_size = 0;
};

}  // namespace

// Entries stand in the order in which objects came. The index leads to the first entry of an id; further ones hang
// behind it in a chain, whose last member the first one knows.
struct ObjectCollector::Registry
{
    EntryList entries;
    UniqueIndex index;

    static std::size_t HashOf(std::string_view id) { return std::hash<std::string_view>()(id); }

    std::uint32_t Find(std::string_view id, std::size_t hash) const
    {
        return index.Find(hash, [&](std::uint32_t at) { return entries[at].id == id; });
    }

    void Add(std::unique_ptr<IObject> object)
    {
        UTF8String const id = object->Id();
        std::size_t const hash = HashOf(id.View());
        std::uint32_t const first = Find(id.View(), hash);
        if (first != UniqueIndex::kAbsent && !entries[first].object)
        {
            entries[first].object = std::move(object);
            return;
        }
        std::uint32_t const place = entries.Size();
        entries.Append({first == UniqueIndex::kAbsent ? std::string(id.View()) : std::string(), std::move(object)});
        if (first != UniqueIndex::kAbsent)
        {
            std::uint32_t const last = entries[first].last == UniqueIndex::kAbsent ? first : entries[first].last;
            entries[last].next = place;
            entries[first].last = place;
            return;
        }
        try
        {
            index.Add(hash, place);
        }
        catch (...)
        {
            entries.DropLast();
            throw;
        }
    }

    bool Dispose(std::string_view id)
    {
        std::uint32_t const first = Find(id, HashOf(id));
        if (first == UniqueIndex::kAbsent || !entries[first].object)
            return false;
        for (std::uint32_t at = first; at != UniqueIndex::kAbsent;)
        {
            entries[at].object.reset();
            std::uint32_t const next = entries[at].next;
            entries[at].next = UniqueIndex::kAbsent;
            at = next;
        }
        entries[first].last = UniqueIndex::kAbsent;
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
    std::uint32_t const first = m_registry->Find(id.View(), Registry::HashOf(id.View()));
    return first == UniqueIndex::kAbsent ? nullptr : m_registry->entries[first].object.get();
}

bool ObjectCollector::HasObject(UTF8String const& id) const
{
    return QueryObject(id) != nullptr;
}

void ObjectCollector::Destroy() noexcept
{
    for (std::uint32_t at = 0; at < m_registry->entries.Size(); ++at)
        m_registry->entries[at].object.reset();
    m_registry->entries = EntryList();
    m_registry->index = UniqueIndex();
}

}  // namespace KVR
