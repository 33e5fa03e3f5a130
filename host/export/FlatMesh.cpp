#include "host/export/FlatMesh.h"

#include <map>
#include <memory>
#include <stdexcept>

#include "host/export/Decompose.h"
#include "host/export/GeometryPlace.h"
#include "host/export/OccurrenceState.h"

namespace KVR
{

namespace
{

class Walk
{
public:
    Walk(ExportTask& task, std::function<void(FlatGroup const&)> const& use) : m_task(task), m_use(use) {}

    void Component(ModelComponent const& component, OccurrenceState const& state, Matrix const& place,
                   std::string const& name)
    {
        if (++m_occurrences > kMostOccurrences)
            throw std::runtime_error("the scene has more than 10,000,000 occurrences; --only exports a part of it");
        for (ModelGeometry const& geometry : component.geometry)
            Geometry(geometry, component, state, place, name);
        for (ModelPlacement const& placement : component.placements)
        {
            ModelComponent const& target = m_task.scene.components[placement.target];
            OccurrenceState const below = state.Below(placement, target);
            if (!below.isVisible)
            {
                m_task.notCarried.Add("hidden occurrences");
                continue;
            }
            Matrix const scaling = Scaling(target.metresPerUnit / component.metresPerUnit);
            Component(target, below, Product(place, Product(below.transform, scaling)),
                      placement.label.empty() ? target.label : placement.label);
        }
    }

private:
    void Geometry(ModelGeometry const& geometry, ModelComponent const& component, OccurrenceState const& state,
                  Matrix const& place, std::string const& name)
    {
        if (geometry.kind == GeometryKind::kBody && geometry.hasMesh)
            return;
        if (!state.IsVisible(geometry))
        {
            m_task.notCarried.Add("hidden pieces of geometry");
            return;
        }
        if (geometry.kind != GeometryKind::kMesh && geometry.kind != GeometryKind::kBody)
        {
            m_task.notCarried.Add("objects of the kind " + geometry.className);
            return;
        }
        TriangleGroups const& groups = GroupsOf(geometry);
        if (groups.groups.empty())
            m_task.notCarried.Add("pieces of geometry without triangles");
        Matrix const all = Product(place, PlaceOf(geometry, component, state));
        std::string const style = state.StyleOf(geometry);
        bool const keeps = state.KeepsFaceStyles(geometry);
        for (TriangleGroups::Group const& group : groups.groups)
            m_use({group, all, Mirrors(all), m_task.scene.StyleOf(keeps && !group.style.empty() ? group.style : style),
                   name.empty() ? geometry.label : name});
    }

    TriangleGroups const& GroupsOf(ModelGeometry const& geometry)
    {
        auto& entry = m_groups[geometry.object];
        if (!entry)
        {
            entry = std::make_unique<TriangleGroups>(
                geometry.mesh ? TriangleGroups::Of(*geometry.mesh)
                              : TriangleGroups::Of(*geometry.body, m_task.options.deflection));
            m_task.notCarried.Add("polygons whose indices make no sense", entry->brokenPolygons);
            m_task.notCarried.Add("faces that could not be meshed", entry->facesWithoutTriangles);
        }
        return *entry;
    }

    ExportTask& m_task;
    std::function<void(FlatGroup const&)> const& m_use;
    std::map<IObject const*, std::unique_ptr<TriangleGroups>> m_groups;
    std::size_t m_occurrences = 0;
};

}  // namespace

void ForEachTriangleGroup(ExportTask& task, std::function<void(FlatGroup const&)> const& use)
{
    ModelComponent const& root = task.scene.components[task.scene.root];
    Walk(task, use).Component(root, OccurrenceState(root), Scaling(root.metresPerUnit / task.scene.metresPerUnit),
                              root.label);
}

std::array<float, 3> VertexOf(FlatGroup const& group, std::uint32_t index)
{
    float const* const p = group.triangles.positions.data() + 3 * std::size_t{index};
    std::array<float, 3> vertex{};
    for (std::size_t row = 0; row < 3; ++row)
        vertex[row] =
            static_cast<float>(group.transform[4 * row] * static_cast<double>(p[0]) +
                               group.transform[4 * row + 1] * static_cast<double>(p[1]) +
                               group.transform[4 * row + 2] * static_cast<double>(p[2]) + group.transform[4 * row + 3]);
    return vertex;
}

}  // namespace KVR
