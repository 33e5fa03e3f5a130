#include "host/export/Drawing.h"

namespace KVR
{

namespace
{

char const* KindOf(ModelGeometry const& geometry)
{
    if (geometry.className == "IPointCloud")
        return "point clouds";
    if (geometry.className == "ISketch")
        return "sketches";
    if (geometry.className == "IAnnotationCallout")
        return "annotations";
    return "work features";
}

}  // namespace

std::vector<std::size_t> const& Drawing::BodiesOf(ModelComponent const& component)
{
    auto const [entry, isNew] = m_bodies.try_emplace(&component);
    if (!isNew)
        return entry->second;
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < component.geometry.size(); ++i)
    {
        if (component.geometry[i].kind == GeometryKind::kBody)
            places.try_emplace(component.geometry[i].id, i);
        else if (component.geometry[i].kind == GeometryKind::kOther)
            m_task.notCarried.Add(KindOf(component.geometry[i]));
    }
    for (ModelGeometry const& geometry : component.geometry)
    {
        auto const found = geometry.bodyId.empty() ? places.end() : places.find(geometry.bodyId);
        entry->second.push_back(found == places.end() ? kNoBody : found->second);
    }
    return entry->second;
}

std::vector<DrawnGeometry> const& Drawing::Of(ModelComponent const& component, OccurrenceState const& state)
{
    std::vector<std::size_t> const& bodies = BodiesOf(component);
    m_drawn.clear();
    for (std::size_t i = 0; i < component.geometry.size(); ++i)
    {
        ModelGeometry const& geometry = component.geometry[i];
        if (geometry.kind == GeometryKind::kOther || (geometry.kind == GeometryKind::kBody && geometry.hasMesh))
            continue;
        ModelGeometry const* const body = bodies[i] == kNoBody ? nullptr : &component.geometry[bodies[i]];
        bool const isBodyHidden = body && body->isVisible && !state.IsVisible(*body);
        if (isBodyHidden || !state.IsVisible(geometry))
        {
            ++m_hidden;
            continue;
        }
        ModelGeometry const& styled = body && !state.KeepsFaceStyles(*body) ? *body : geometry;
        m_drawn.push_back({i, state.StyleOf(styled), state.KeepsFaceStyles(styled)});
    }
    return m_drawn;
}

}  // namespace KVR
