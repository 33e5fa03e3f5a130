#include "scene/reader/SceneReader.h"

#include <algorithm>
#include <utility>

#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"
#include "scene/reader/ObjectKind.h"
#include "scene/reader/SceneContent.h"

namespace KVR
{

namespace
{

// Of ids in an occurrence path that is looked at.
constexpr unsigned long long kLongestPath = 1000;

bool IsUsable(IdSet const& path)
{
    return !path.IsEmpty() && path.Size() <= kLongestPath;
}

// Of children that room is made for at once: how many there are is a claim until they are asked for.
constexpr unsigned long long kMostAtOnce = 4096;

// So many children ahead objects are fetched, while the one in front is asked.
constexpr std::size_t kAhead = 4;

// Each first look at an object is a wait for memory, as long as all that is asked of it.
void Prefetch(IObject const* object)
{
    // What an instance answers from.
    constexpr std::size_t kObject = 448;
    constexpr std::size_t kLine = 64;
    if (!object)
        return;
    auto const* const bytes = static_cast<char const*>(static_cast<void const*>(object));
    for (std::size_t at = 0; at < kObject; at += kLine)
        __builtin_prefetch(bytes + at);
}

// What was filled in as a list of its own becomes the component's: as it is where it has no room left, which is
// so for most, and else as a copy.
template <class Entry>
void HandOver(std::vector<Entry>& list, std::vector<Entry>& target)
{
    if (list.size() == list.capacity())
        target = std::exchange(list, {});
    else
        target.assign(list.begin(), list.end());
    list.clear();
}

}  // namespace

SceneReader::SceneReader(SceneContent& content, IProducer& producer)
    : m_content(content),
      m_producer(producer),
      m_styles(content, producer),
      m_attributes(content, producer, m_styles),
      m_geometryReader(content, producer, m_styles)
{
}

void SceneReader::Read(UTF8String const& rootId)
{
    m_content.root = ComponentOf(rootId);
    // Reading one adds those that it places.
    for (std::size_t index = 0; index < m_content.components.size(); ++index)
        ReadComponent(index);
    // What states no unit is in that of the scene, or of its component.
    for (SceneComponent& component : m_content.components)
    {
        if (component.metresPerUnit == 0.0)
            component.metresPerUnit = m_content.metresPerUnit;
        for (SceneGeometry& geometry : component.geometry)
            if (geometry.metresPerUnit == 0.0)
                geometry.metresPerUnit = component.metresPerUnit;
    }
    m_attributes.ReadUniverse();
}

std::size_t SceneReader::ComponentOf(UTF8String const& id)
{
    auto const known = m_components.find(id.View());
    if (known != m_components.end())
        return known->second;
    IObject* const object = id.IsEmpty() ? nullptr : m_producer.Load(id);
    if (!object)
        return kNoIndex;
    ObjectKind const kind(*object);
    return kind.IsComponent() ? AddComponent(id, *object, kind) : kNoIndex;
}

std::size_t SceneReader::AddComponent(UTF8String const& id, IObject& object, ObjectKind const& kind)
{
    std::size_t const index = m_content.components.size();
    SceneComponent& component = m_content.components.emplace_back();
    component.kind = kind.file       ? SceneComponent::Kind::kFile
                     : kind.assembly ? SceneComponent::Kind::kAssembly
                                     : SceneComponent::Kind::kPart;
    component.object = &object;
    component.id = m_content.text.Keep(id);
    component.label = m_content.text.Keep(object.Label());
    m_components.emplace(component.id, index);
    return index;
}

void SceneReader::ReadComponent(std::size_t index)
{
    IObject& object = *m_content.components[index].object;
    ObjectKind const kind(object);
    {
        SceneComponent& component = m_content.components[index];
        IUnit const* measured = kind.file;
        IComponent const* owner = kind.assembly;
        if (kind.part)
            owner = kind.part;
        if (owner)
            measured = owner;
        if (measured && measured->LengthUnit(component.unit) != kIsValueSpecified_Yes)
            component.unit = kUnitType_Unknown;
        component.metresPerUnit = MetresOf(component.unit);
        if (component.metresPerUnit > 0.0 && !m_hasUnit)
        {
            m_content.unit = component.unit;
            m_content.metresPerUnit = component.metresPerUnit;
            m_hasUnit = true;
        }
        m_attributes.ReadSets(object);
        if (kind.file)
            component.fileProperties = kind.file->FileProperties();
        if (owner)
        {
            component.fileProperties = owner->FileProperties();
            m_attributes.ReadProperties(component);
            component.style = m_styles.First(owner->Styles());
        }
        if (kind.assembly)
            ReadOverrides(component, *kind.assembly);
    }
    if (kind.file)
        ListChildren(*kind.file);
    else if (kind.assembly)
        ListChildren(*kind.assembly);
    else if (kind.part)
        ListChildren(*kind.part);
    ReadChildren(index);
}

template <class Owner>
void SceneReader::ListChildren(Owner const& owner)
{
    unsigned long long const count = owner.ChildCount();
    m_childIds.clear();
    m_children.reserve(std::min(count, kMostAtOnce));
    for (unsigned long long i = 0; i < count; ++i)
    {
        m_childIds.push_back(owner.ChildAt(i).Id());
        m_children.emplace_back().id = m_content.text.Keep(m_childIds.back());
    }
    // A loop of its own: each wait for memory begins before those of the children in front have ended.
    for (std::size_t i = 0; i < m_childIds.size(); ++i)
        if (!m_childIds[i].IsEmpty())
            m_children[i].object = m_producer.Load(m_childIds[i]);
}

// A child that is listed twice is one object.
void SceneReader::FindRepeats()
{
    m_firsts.clear();
    m_sorted.clear();
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (m_children[i].object)
            m_sorted.emplace_back(m_children[i].object, i);
    if (!std::is_sorted(m_sorted.begin(), m_sorted.end()))
        std::sort(m_sorted.begin(), m_sorted.end());
    for (std::size_t i = 1; i < m_sorted.size(); ++i)
    {
        if (m_sorted[i].first != m_sorted[i - 1].first)
            continue;
        if (m_firsts.empty())
            for (std::size_t child = 0; child < m_children.size(); ++child)
                m_firsts.push_back(child);
        m_firsts[m_sorted[i].second] = m_firsts[m_sorted[i - 1].second];
    }
}

void SceneReader::ReadChildren(std::size_t index)
{
    FindRepeats();
    for (std::size_t i = 0; i < m_children.size(); ++i)
    {
        if (i + kAhead < m_children.size())
            Prefetch(m_children[i + kAhead].object);
        if (!m_firsts.empty() && m_firsts[i] != i)
            m_children[i].placement = m_children[m_firsts[i]].placement;
        else if (m_children[i].object)
            ReadChild(index, m_children[i]);
    }
    GeometryReader::Join(m_geometry);
    SceneComponent& component = m_content.components[index];
    HandOver(m_children, component.children);
    HandOver(m_placements, component.placements);
    HandOver(m_geometry, component.geometry);
}

void SceneReader::ReadChild(std::size_t index, SceneChild& child)
{
    ObjectKind const kind(*child.object);
    if (kind.instance)
    {
        ReadInstance(index, *kind.instance, child);
        return;
    }
    if (kind.IsComponent())
    {
        child.placement = m_placements.size();
        m_placements.emplace_back().target = ComponentOf(UTF8String(child.id));
        return;
    }
    if (!m_geometryReader.Read(*child.object, m_geometry))
        m_content.cuts.push_back({index, kNoIndex, SceneCut::kTooDeep});
}

void SceneReader::ReadInstance(std::size_t index, IInstance& instance, SceneChild& child)
{
    // In an assembly most children are instances.
    if (m_placements.empty())
        m_placements.reserve(m_children.size());
    child.placement = m_placements.size();
    ScenePlacement& placement = m_placements.emplace_back();
    placement.object = child.object;
    UTF8String const id = instance.Id();
    placement.id = id.View() == child.id ? child.id : m_content.text.Keep(id);
    placement.label = m_content.text.Keep(instance.Label());
    placement.transform = PlaceOf(instance.Transform());
    placement.isVisible = instance.IsVisible();
    placement.style = m_styles.First(instance.Styles());
    placement.target = ComponentOf(instance.TargetId().Id());
    if (placement.target != kNoIndex)
        return;
    placement.cut = SceneCut::kMissingTarget;
    m_content.cuts.push_back({index, child.placement, SceneCut::kMissingTarget});
}

void SceneReader::ReadOverrides(SceneComponent& component, IAssembly const& assembly)
{
    SceneOverride* top = nullptr;
    for (unsigned long long i = 0; i < assembly.CrossLevelVisibilityCount(); ++i)
    {
        IdSet path;
        bool isVisible = true;
        assembly.CrossLevelVisibilityAt(i, path, isVisible);
        if (IsUsable(path))
            OverrideAt(top, path).isVisible = isVisible;
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelStyleCount(); ++i)
    {
        IdSet path;
        IdSet styles;
        assembly.CrossLevelStyleAt(i, path, styles);
        if (IsUsable(path) && !styles.IsEmpty())
            OverrideAt(top, path).style = m_styles.First(styles);
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelTransformCount(); ++i)
    {
        IdSet path;
        Matrix3d transform;
        assembly.CrossLevelTransformAt(i, path, transform);
        if (IsUsable(path))
            OverrideAt(top, path).transform = PlaceOf(&transform);
    }
    component.overrides = top;
}

SceneOverride& SceneReader::OverrideAt(SceneOverride*& top, IdSet const& path)
{
    if (!top)
        top = &m_content.overrides.emplace_back();
    SceneOverride* entry = top;
    for (unsigned long long i = 0; i < path.Size(); ++i)
    {
        auto const known = entry->below.find(path.At(i).View());
        if (known != entry->below.end())
        {
            entry = known->second;
            continue;
        }
        SceneOverride* const made = &m_content.overrides.emplace_back();
        entry->below.emplace(m_content.text.Keep(path.At(i)), made);
        entry = made;
    }
    return *entry;
}

}  // namespace KVR
