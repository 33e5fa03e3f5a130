#include "scene/reader/ViewOverrides.h"

#include <algorithm>

#include "framework/api/IView.h"
#include "framework/api/LengthUnits.h"
#include "scene/NearestNames.h"
#include "scene/SceneFilter.h"
#include "scene/SceneView.h"
#include "scene/reader/SceneContent.h"

namespace KVR
{

namespace
{

IView const& ViewOf(SceneContent const& content, std::string const& name)
{
    NearestNames nearest(name);
    std::vector<std::pair<std::string, IView const*>> labels;
    for (SceneReference const& listed : content.views)
    {
        auto const* const view = dynamic_cast<IView const*>(listed.object);
        if (!view)
            continue;
        if (listed.id == name)
            return *view;
        labels.emplace_back(UTF8String(view->Label()).View(), view);
        nearest.Add(labels.back().first);
    }
    auto const found =
        std::find_if(labels.begin(), labels.end(), [&](auto const& entry) { return entry.first == name; });
    if (found == labels.end())
        throw SceneFilterError({{name, false, nearest.Names()}});
    return *found->second;
}

class ViewMembersReader
{
public:
    ViewMembersReader(SceneContent& content, IView const& view) : m_content(content)
    {
        UnitTypeEnum unit = kUnitType_Unknown;
        double const metres = view.LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
        m_metres = metres > 0.0 ? metres : content.metresPerUnit;
        for (SceneViewMember const& member : SceneView::MembersOf(view))
            Add(member);
    }

private:
    void Add(SceneViewMember const& member)
    {
        std::vector<std::string_view> path;
        for (unsigned long long i = 0; i < member.path.Size(); ++i)
            path.push_back(m_content.text.Keep(member.path.At(i)));
        std::size_t const start = path.empty() ? kNoIndex : OwnerOf(path.front(), m_content.root, 0);
        double const metres = start == kNoIndex ? 0.0 : UnitAtEnd(start, path);
        if (!(metres > 0.0))
            return;
        SceneOverride* entry = &OverridesOf(start);
        for (std::string_view const id : path)
        {
            SceneOverride*& below = entry->below[id];
            if (!below)
                below = &m_content.overrides.emplace_back();
            entry = below;
        }
        entry->isVisible = member.isVisible;
        auto const style =
            member.styles.IsEmpty() ? m_content.styleOf.end() : m_content.styleOf.find(member.styles.At(0).View());
        if (style != m_content.styleOf.end())
            entry->style = style->second;
        Matrix moved = PlaceOf(&member.transform);
        // A view that moves nothing says the identity.
        if (moved == kIdentity)
            return;
        for (std::size_t const i : {3, 7, 11})
            moved[i] *= m_metres / metres;
        entry->transform = moved;
    }

    static ScenePlacement const* PlacementOf(SceneComponent const& component, std::string_view id)
    {
        auto const found = std::find_if(component.placements.begin(), component.placements.end(),
                                        [&](ScenePlacement const& one) { return one.object && one.id == id; });
        return found == component.placements.end() ? nullptr : &*found;
    }

    static SceneGeometry const* GeometryOf(SceneComponent const& component, std::string_view id)
    {
        auto const found = std::find_if(component.geometry.begin(), component.geometry.end(),
                                        [&](SceneGeometry const& one) { return one.id == id; });
        return found == component.geometry.end() ? nullptr : &*found;
    }

    // The component that has an id, from the root on through what stands by itself in files; kNoIndex for none.
    std::size_t OwnerOf(std::string_view id, std::size_t component, std::size_t depth) const
    {
        SceneComponent const& here = m_content.components[component];
        if (PlacementOf(here, id) || GeometryOf(here, id))
            return component;
        for (ScenePlacement const& placement : here.placements)
            if (!placement.object && placement.IsEntered() && depth < SceneFilter::kMostLevels)
                if (std::size_t const owner = OwnerOf(id, placement.target, depth + 1); owner != kNoIndex)
                    return owner;
        return kNoIndex;
    }

    // The unit in which a transform of the path's end is stated; 0 for a path that leads nowhere.
    double UnitAtEnd(std::size_t component, std::vector<std::string_view> const& path) const
    {
        double metres = 0.0;
        for (std::size_t i = 0; i < path.size(); ++i)
        {
            SceneComponent const& here = m_content.components[component];
            SceneGeometry const* const geometry = GeometryOf(here, path[i]);
            if (ScenePlacement const* const placement = PlacementOf(here, path[i]))
            {
                if (!placement->IsEntered())
                    return 0.0;
                metres = here.metresPerUnit;
                component = placement->target;
            }
            else if (geometry && i + 1 == path.size())
                return geometry->metresPerUnit;
            else if (here.id != path[i])
                return 0.0;
        }
        return metres;
    }

    // A component's own, which others do not share.
    SceneOverride& OverridesOf(std::size_t component)
    {
        auto const [entry, isNew] = m_overrides.try_emplace(component, nullptr);
        if (isNew)
        {
            // In front of its own, which what is said here goes over where both say something.
            SceneOverride const* const own = m_content.components[component].overrides;
            entry->second = &(own ? m_content.overrides.emplace_back(*own) : m_content.overrides.emplace_back());
            m_content.components[component].overrides = entry->second;
        }
        return *entry->second;
    }

    SceneContent& m_content;
    double m_metres = 1.0;
    std::unordered_map<std::size_t, SceneOverride*> m_overrides;
};

}  // namespace

void ApplyView(SceneContent& content, std::string const& name)
{
    if (content.root != kNoIndex)
        ViewMembersReader(content, ViewOf(content, name));
}

}  // namespace KVR
