#include "framework/api/IdSet.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "framework/api/LargePages.h"
#include "framework/api/Subscript.h"
#include "framework/api/UniqueIndex.h"

namespace KVR
{

namespace
{
std::size_t HashOf(UTF8String const& id)
{
    return std::hash<UTF8String>()(id);
}
}  // namespace

struct IdSet::Content
{
    std::vector<UTF8String> ids;
    // Covers the first `indexed` ids; made when the list has grown long and someone asks for uniqueness.
    UniqueIndex index;
    std::size_t indexed = 0;

    bool Find(UTF8String const& id)
    {
        if (IsShort())
            return std::find(ids.begin(), ids.end(), id) != ids.end();
        CompleteIndex();
        return Find(id, HashOf(id));
    }

    void Reserve(std::size_t count)
    {
        if (count > ids.capacity())
        {
            ids.reserve(count);
            // In small pages the faults of a list of a million would cost more than to look for its ids.
            AdviseLargePages(ids.data() + ids.size(), (ids.capacity() - ids.size()) * sizeof(UTF8String));
        }
        if (count > UniqueIndex::kShortList)
            index.Reserve(count);
    }

    template <class Id>
    void AddUnlessFound(Id&& id)
    {
        if (IsShort())
        {
            if (!Find(id))
                ids.push_back(std::forward<Id>(id));
            return;
        }
        CompleteIndex();
        // One hash for both, which is much of the time that a long list takes.
        AddUnlessFound(std::forward<Id>(id), HashOf(id));
    }

    // A table of many ids is beyond the processor's caches: its places are fetched together, ahead of their use.
    void AddAllUnlessFound(std::vector<UTF8String>& added)
    {
        std::size_t next = 0;
        for (; next < added.size() && IsShort(); ++next)
            AddUnlessFound(std::move(added[next]));
        if (next == added.size())
            return;
        CompleteIndex();
        std::vector<std::size_t> hashes;
        hashes.reserve(added.size() - next);
        for (std::size_t i = next; i < added.size(); ++i)
        {
            hashes.push_back(HashOf(added[i]));
            index.Prefetch(hashes.back());
        }
        for (std::size_t i = next; i < added.size(); ++i)
            AddUnlessFound(std::move(added[i]), hashes[i - next]);
    }

private:
    template <class Id>
    void AddUnlessFound(Id&& id, std::size_t hash)
    {
        if (Find(id, hash))
            return;
        ids.push_back(std::forward<Id>(id));
        index.Add(hash, static_cast<std::uint32_t>(indexed++));
    }

    bool IsShort() const { return ids.size() <= UniqueIndex::kShortList; }

    bool Find(UTF8String const& id, std::size_t hash) const
    {
        return index.Find(hash, [&](std::uint32_t position) { return ids[position] == id; }) != UniqueIndex::kAbsent;
    }

    void CompleteIndex()
    {
        for (; indexed < ids.size(); ++indexed)
        {
            std::size_t const hash = HashOf(ids[indexed]);
            if (!Find(ids[indexed], hash))
                index.Add(hash, static_cast<std::uint32_t>(indexed));
        }
    }
};

IdSet::IdSet() noexcept = default;
IdSet::IdSet(IdSet&& other) noexcept = default;
IdSet::~IdSet() = default;
IdSet& IdSet::operator=(IdSet&& other) noexcept = default;

IdSet::IdSet(IdSet const& other)
{
    if (!other.IsEmpty())
        Owned().ids = other.m_content->ids;
}

IdSet& IdSet::operator=(IdSet const& other)
{
    if (this != &other)
        *this = IdSet(other);
    return *this;
}

IdSet::Content& IdSet::Owned()
{
    if (!m_content)
        m_content = std::make_unique<Content>();
    return *m_content;
}

void IdSet::AddWithUniquenessCheck(UTF8String const& id)
{
    Owned().AddUnlessFound(id);
}

void IdSet::AddWithUniquenessCheck(UTF8String&& id)
{
    Owned().AddUnlessFound(std::move(id));
}

void IdSet::AddAllWithUniquenessCheck(std::vector<UTF8String>& ids)
{
    if (!ids.empty())
        Owned().AddAllUnlessFound(ids);
    ids.clear();
}

void IdSet::AddWithoutUniquenessCheck(UTF8String const& id)
{
    Owned().ids.push_back(id);
}
void IdSet::AddWithoutUniquenessCheck(UTF8String&& id)
{
    Owned().ids.push_back(std::move(id));
}

void IdSet::Reserve(unsigned long long count)
{
    if (count > 0)
        Owned().Reserve(static_cast<std::size_t>(count));
}

bool IdSet::Contains(UTF8String const& id) const
{
    return m_content && m_content->Find(id);
}
unsigned long long IdSet::Size() const noexcept
{
    return m_content ? m_content->ids.size() : 0;
}
bool IdSet::IsEmpty() const noexcept
{
    return Size() == 0;
}

UTF8String const& IdSet::At(unsigned long long index) const
{
    if (index >= Size())
        ThrowInvalidSubscript();
    return m_content->ids[index];
}

UTF8String const& IdSet::operator[](unsigned long long index) const
{
    return At(index);
}

bool operator==(IdSet const& a, IdSet const& b) noexcept
{
    if (a.Size() != b.Size())
        return false;
    return a.IsEmpty() || a.m_content->ids == b.m_content->ids;
}

std::size_t IdSet::Hash() const noexcept
{
    std::size_t hash = Size();
    for (unsigned long long i = 0; i < Size(); ++i)
        hash = hash * 0x9E3779B97F4A7C15ULL + HashOf(m_content->ids[i]);
    return hash;
}

}  // namespace KVR
