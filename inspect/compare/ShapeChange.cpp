#include "inspect/compare/ShapeChange.h"

#include <fmt/format.h>

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"
#include "inspect/compare/BodyMeasures.h"

namespace KVR
{

namespace
{

std::string MeasuresOf(IObject* object)
{
    if (auto const* const mesh = dynamic_cast<IPolygonMesh const*>(object))
        return fmt::format("{} polygons, {} vertices", mesh->PolygonCount(), mesh->VertexCount());
    auto const* const brep = dynamic_cast<IBrep const*>(object);
    if (!brep)
        return {};
    if (!brep->Body())
        return "no body";
    auto const measures = BodyMeasures::Of(*brep->Body());
    return measures ? fmt::format("volume {:.9g}, area {:.9g}", measures->volume, measures->area) : std::string();
}

enum class Bodies
{
    kNone,
    kSame,
    kChanged
};

// Whether the bodies that a mesh stands for are what they were: that which it names, or else all of its component.
Bodies BodiesOf(ComparedScene const& first, SceneComponent const& component, std::string_view bodyId,
                ComparedScene const& second)
{
    Bodies bodies = Bodies::kNone;
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (!geometry.body || (!bodyId.empty() && geometry.id != bodyId))
            continue;
        std::size_t const index = first.Find(geometry.id);
        std::size_t const match = index == kNoIndex ? kNoIndex : first.Objects()[index].match;
        if (match == kNoIndex || first.Objects()[index].shape != second.Objects()[match].shape)
            return Bodies::kChanged;
        bodies = Bodies::kSame;
    }
    return bodies;
}

}  // namespace

ShapeChange ShapeChange::Of(ComparedScene const& first, std::size_t a, ComparedScene const& second, std::size_t b)
{
    ShapeChange change;
    SceneGeometry const* const geometry = first.GeometryOf(first.Objects()[a]);
    if (geometry && geometry->mesh)
    {
        Bodies const bodies = BodiesOf(first, *first.ComponentOf(first.Objects()[a]), geometry->bodyId, second);
        change.isTold = bodies != Bodies::kChanged;
        change.kind = bodies == Bodies::kSame ? ChangeKind::kTessellated : ChangeKind::kBody;
    }
    if (!change.isTold)
        return change;
    change.first = MeasuresOf(first.Objects()[a].object);
    change.second = MeasuresOf(second.Objects()[b].object);
    return change;
}

}  // namespace KVR
