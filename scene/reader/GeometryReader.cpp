#include "scene/reader/GeometryReader.h"

#include <algorithm>
#include <unordered_set>

#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"
#include "scene/ExtensionTypes.h"
#include "scene/reader/GeometryFinder.h"
#include "scene/reader/SceneContent.h"
#include "scene/reader/StyleReader.h"

namespace KVR
{

namespace
{

// Of sets of geometry in one another, and of all that one child of a component may stand for.
constexpr std::size_t kDeepestSets = 1000;
constexpr std::size_t kMostSets = 1'000'000;

}  // namespace

/// Finds out whether an object is a set of geometry; it is none when there is no object found.
class GeometryReader::SetFinder final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;
    void Visit(IGeometricSet* object) override { Take(*object); }
    void Visit(IExtensionGeometry* object) override { Take(*object); }

    Set found;

private:
    template <class Interface>
    void Take(Interface const& set)
    {
        found.object = &set;
        found.childIdAt = [](IGeometry const& object, unsigned long long index)
        { return static_cast<Interface const&>(object).ChildAt(index).Id(); };
        found.count = set.ChildCount();
    }
};

bool GeometryReader::Read(IObject& object, std::vector<SceneGeometry>& list)
{
    m_entered = 0;
    m_isWhole = true;
    if (!Enter(object, kIdentity, true))
        Add(object, kIdentity, true, list);
    while (!m_path.empty())
    {
        Set& top = m_path.back();
        if (top.next == top.count)
        {
            m_path.pop_back();
            continue;
        }
        unsigned long long const index = top.next++;
        UTF8String const id = top.childIdAt(*top.object, index);
        IObject* const child = id.IsEmpty() ? nullptr : m_producer.Load(id);
        if (!child)
            continue;
        Matrix const place = top.place;
        bool const isVisible = top.isVisible;
        if (!Enter(*child, place, isVisible))
            Add(*child, place, isVisible, list);
    }
    return m_isWhole;
}

bool GeometryReader::Enter(IObject& object, Matrix const& place, bool isVisible)
{
    SetFinder finder;
    object.AcceptVisitor(&finder);
    Set& set = finder.found;
    if (!set.object)
        return false;
    bool const isWithinItself =
        std::any_of(m_path.begin(), m_path.end(), [&](Set const& outer) { return outer.object == set.object; });
    if (isWithinItself || m_path.size() == kDeepestSets || m_entered == kMostSets)
    {
        m_isWhole = false;
        return true;
    }
    ++m_entered;
    set.place = Product(place, PlaceOf(set.object->Transform()));
    set.isVisible = isVisible && set.object->IsVisible();
    m_path.push_back(set);
    return true;
}

void GeometryReader::Add(IObject& object, Matrix const& place, bool isVisible, std::vector<SceneGeometry>& list)
{
    GeometryFinder finder;
    object.AcceptVisitor(&finder);
    SceneGeometry& geometry = finder.geometry;
    if (geometry.className.empty())
        return;
    geometry.object = &object;
    geometry.id = m_content.text.Keep(object.Id());
    geometry.label = m_content.text.Keep(object.Label());
    geometry.transform = Product(place, geometry.transform);
    geometry.isVisible = geometry.isVisible && isVisible;
    geometry.style = m_styles.First(finder.styles);
    // That of the component is known later.
    UnitTypeEnum unit = kUnitType_Unknown;
    auto const* const measured = dynamic_cast<IUnit const*>(&object);
    geometry.metresPerUnit = measured && measured->LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    ExtensionDataContent content;
    if (geometry.mesh && object.ExtensionDataByTypeId(kBodyTypeId, content) == kIsValueSpecified_Yes)
        geometry.bodyId = m_content.text.Keep(content.Data());
    ReadStylesWithin(geometry);
    list.push_back(geometry);
}

void GeometryReader::ReadStylesWithin(SceneGeometry const& geometry)
{
    if (geometry.body)
        if (SubEntityToStylesMap const* const map = geometry.body->StylesMap())
            for (unsigned long long i = 0; i < map->Size(); ++i)
                m_styles.First(map->StylesAt(i));
    IdSetSet materials;
    if (geometry.mesh && geometry.mesh->PolygonMaterials(materials) == kIsValueSpecified_Yes)
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            m_styles.First(materials.At(i));
}

void GeometryReader::Join(std::vector<SceneGeometry>& list)
{
    std::unordered_set<std::string_view> meshed;
    for (SceneGeometry const& geometry : list)
        if (!geometry.bodyId.empty())
            meshed.insert(geometry.bodyId);
    for (SceneGeometry& geometry : list)
        geometry.hasMesh = geometry.kind == GeometryKind::kBody && meshed.contains(geometry.id);
}

}  // namespace KVR
