#include "inspect/compare/ComparedScene.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "describe/Ask.h"
#include "describe/ReferenceWalk.h"
#include "describe/SilentAnswers.h"
#include "describe/Tell.h"
#include "framework/api/IInstance.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"
#include "framework/api/UTF16String.h"
#include "inspect/compare/MatchedAnswers.h"
#include "inspect/digest/AnswerDigest.h"
#include "inspect/digest/ExtensionTypeIds.h"

namespace KVR
{

namespace
{

std::string Label(IObject const& object)
{
    auto const label = Ask([&] { return object.Label(); });
    return label ? std::string(UTF8String(*label).View()) : std::string();
}

std::string PersistentId(IObject const& object)
{
    UTF8String id;
    auto const answer = Ask([&] { return object.VersionPersistentId(id); });
    return answer == kIsValueSpecified_Yes ? std::string(id.View()) : std::string();
}

// Keeps the ids of children, and of what an instance places.
class TreeCollector final : public SilentAnswers
{
public:
    explicit TreeCollector(std::vector<UTF8String>& ids) : m_ids(ids) {}

    bool BeginMember(Row const& row) override { return row.refers == Refers::Child || row.name == "TargetId"; }
    void Text(std::string_view id) override
    {
        if (!id.empty())
            m_ids.emplace_back(id);
    }

private:
    std::vector<UTF8String>& m_ids;
};

void CollectTree(IObject& object, std::vector<UTF8String>& ids)
{
    DescribedObject const described = DescribedObject::Of(object);
    TreeCollector collector(ids);
    TellMembers(*described.interface, described.object, Telling{collector});
}

}  // namespace

ComparedScene::ComparedScene(IProducer& producer)
    : m_scene(producer, producer.RootObjectId().Id()),
      m_totals(SceneTotals::Of(m_scene)),
      m_extensionTypeIds(WithOwnTypeIds({}))
{
    if (IUniverse const* const universe = producer.LoadUniverse())
        m_properties = universe->PropertyDatabaseOf();
    Walk(producer, producer.RootObjectId().Id());
    Digest();
    PlaceInTree();
}

std::size_t ComparedScene::Find(std::string_view id) const
{
    auto const found = m_index.find(UTF8String(id));
    return found == m_index.end() ? kNoIndex : found->second;
}

void ComparedScene::Walk(IProducer& producer, UTF8String const& rootId)
{
    // An id without an object is kept as one, so that it is looked for once.
    auto const reach = [&](UTF8String const& id, std::size_t owner)
    {
        if (!m_index.emplace(id, m_objects.size()).second)
            return;
        ComparedObject& entry = m_objects.emplace_back();
        entry.id = id;
        entry.owner = owner;
        entry.object = producer.Load(id);
        DescribedObject const described = entry.object ? DescribedObject::Of(*entry.object) : DescribedObject{};
        entry.interface = described.interface;
        if (!entry.interface)
            return;
        entry.label = Label(*entry.object);
        entry.persistentId = PersistentId(*entry.object);
    };
    reach(rootId, kNoIndex);
    std::vector<UTF8String> ids;
    auto const follow = [&](void (*collect)(IObject & object, std::vector<UTF8String> & ids))
    {
        for (std::size_t i = 0; i < m_objects.size(); ++i)
        {
            if (!m_objects[i].interface)
                continue;
            ids.clear();
            collect(*m_objects[i].object, ids);
            for (UTF8String const& id : ids)
                reach(id, i);
        }
    };
    follow(&CollectTree);
    m_treeSize = m_objects.size();
    follow(&CollectReferences);
}

Telling ComparedScene::To(AnswerVisitor& visitor) const
{
    return {.to = visitor, .properties = m_properties, .extensionTypeIds = m_extensionTypeIds};
}

void ComparedScene::Digest()
{
    AnswerDigest shape;
    AnswerDigest rest;
    MatchedAnswers parted(&shape, &rest);
    for (ComparedObject& entry : m_objects)
    {
        if (!entry.interface)
            continue;
        parted.Begin(*entry.interface);
        TellMembers(*entry.interface, DescribedObject::Of(*entry.object).object, To(parted));
        shape.AddShapes(*entry.object);
        if (IsA(*entry.interface, TableOf<IGeometry>::kTable))
            entry.shape = shape.Take();
        entry.rest = rest.Take();
    }
}

void ComparedScene::PlaceInTree()
{
    std::vector<SceneComponent> const& components = m_scene.Components();
    AnswerDigest shapes;
    for (std::size_t c = 0; c < components.size(); ++c)
    {
        std::size_t const own = Find(components[c].id);
        if (own == kNoIndex)
            continue;
        m_objects[own].component = c;
        for (std::size_t g = 0; g < components[c].geometry.size(); ++g)
        {
            std::size_t const index = Find(components[c].geometry[g].id);
            if (index == kNoIndex)
                continue;
            m_objects[index].component = c;
            m_objects[index].place = g;
            shapes.Bytes(m_objects[index].shape.bytes.data(), m_objects[index].shape.bytes.size());
        }
        if (!components[c].geometry.empty())
            m_objects[own].shape = shapes.Take();
        for (std::size_t p = 0; p < components[c].placements.size(); ++p)
        {
            ScenePlacement const& placement = components[c].placements[p];
            std::size_t const index = placement.object ? Find(placement.id) : kNoIndex;
            if (index == kNoIndex)
                continue;
            m_objects[index].component = c;
            m_objects[index].place = p;
            if (placement.target != kNoIndex)
                m_objects[index].target = Find(components[placement.target].id);
        }
    }
}

bool ComparedScene::IsComponent(ComparedObject const& object) const
{
    return object.component != kNoIndex && m_scene.Components()[object.component].object == object.object;
}

SceneComponent const* ComparedScene::ComponentOf(ComparedObject const& object) const
{
    return object.component == kNoIndex ? nullptr : &m_scene.Components()[object.component];
}

ScenePlacement const* ComparedScene::PlacementOf(ComparedObject const& object) const
{
    if (object.place == kNoIndex || !dynamic_cast<IInstance const*>(object.object))
        return nullptr;
    return &m_scene.Components()[object.component].placements[object.place];
}

SceneGeometry const* ComparedScene::GeometryOf(ComparedObject const& object) const
{
    if (object.place == kNoIndex || dynamic_cast<IInstance const*>(object.object))
        return nullptr;
    return &m_scene.Components()[object.component].geometry[object.place];
}

unsigned long long ComparedScene::OccurrencesOf(std::size_t index) const
{
    ComparedObject const& object = m_objects[index];
    return object.component == kNoIndex ? 0 : m_totals.occurrencesOf[object.component];
}

std::string ComparedScene::NameOf(std::size_t index) const
{
    ComparedObject const& object = m_objects[index];
    return object.label.empty() ? std::string(object.id.View()) : object.label;
}

std::string ComparedScene::PathOf(std::size_t index) const
{
    if (m_objects[index].component == kNoIndex)
        return NameOf(index);
    std::vector<std::string> names;
    for (std::size_t at = index; at != kNoIndex; at = m_objects[at].owner)
    {
        std::size_t const owner = m_objects[at].owner;
        // What an instance places goes by the instance's name, and the root file by none.
        bool const isPlaced = owner != kNoIndex && m_objects[owner].target == at && !m_objects[owner].label.empty();
        bool const isRootFile = owner == kNoIndex && at != index;
        // An instance without a name goes by that of what it places.
        bool const isNameless = at != index && m_objects[at].target != kNoIndex && m_objects[at].label.empty();
        if (!isPlaced && !isRootFile && !isNameless)
            names.push_back(NameOf(at));
    }
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        path += (path.empty() ? "" : "/") + *name;
    return path.empty() ? NameOf(index) : path;
}

std::vector<std::string> ComparedScene::PlaceOf(std::size_t index) const
{
    std::vector<std::string> ids;
    if (m_objects[index].component == kNoIndex)
        return ids;
    for (std::size_t at = index; at != kNoIndex; at = m_objects[at].owner)
        if (PlacementOf(m_objects[at]))
            ids.emplace_back(m_objects[at].id.View());
    std::reverse(ids.begin(), ids.end());
    return ids;
}

std::vector<std::size_t> ComparedScene::ChildrenOf(std::size_t index) const
{
    std::vector<std::size_t> children;
    // Behind the root owners come in the order of their objects: once for the tree, and once for all else.
    auto const isBefore = [](ComparedObject const& object, std::size_t owner) { return object.owner < owner; };
    auto const tree = m_objects.begin() + static_cast<std::ptrdiff_t>(m_treeSize);
    for (auto const& [begin, end] : {std::pair(m_objects.begin() + 1, tree), std::pair(tree, m_objects.end())})
        for (auto child = std::lower_bound(begin, end, index, isBefore); child != end && child->owner == index; ++child)
            children.push_back(static_cast<std::size_t>(child - m_objects.begin()));
    return children;
}

}  // namespace KVR
