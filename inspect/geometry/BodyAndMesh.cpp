#include "inspect/geometry/BodyAndMesh.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "framework/api/LengthUnits.h"
#include "framework/api/UnitText.h"
#include "inspect/geometry/MetricBox.h"
#include "scene/SceneComponent.h"

namespace KVR
{

namespace
{

// Units are told apart by their numbers, which are all below this.
constexpr int kUnitLimit = 128;
// How exactly a ratio has to be that of two units.
constexpr double kUnitTolerance = 0.05;

bool AreApart(MetricBox const& mesh, MetricBox const& body)
{
    double const most = 0.5 * body.Diagonal();
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (mesh.box.low[axis] > body.box.high[axis] + most || mesh.box.high[axis] < body.box.low[axis] - most)
            return true;
    return false;
}

BodyAndMesh::Boxes Compare(MetricBox const& mesh, std::optional<MetricBox> const& body)
{
    if (!body)
        return {};
    double const size = body->Diagonal();
    double const ratio = size > 0.0 ? mesh.Diagonal() / size : 1.0;
    return {std::isfinite(ratio) ? ratio : 1.0, AreApart(mesh, *body)};
}

}  // namespace

std::vector<BodyAndMesh> BodyAndMesh::Of(SceneComponent const& component)
{
    std::vector<BodyAndMesh> pairs;
    std::unordered_map<std::string_view, SceneGeometry const*> bodies;
    std::vector<SceneGeometry const*> meshes;
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (geometry.body)
            bodies.try_emplace(geometry.id, &geometry);
        if (geometry.mesh)
            meshes.push_back(&geometry);
    }
    for (SceneGeometry const* const mesh : meshes)
        if (auto const body = bodies.find(mesh->bodyId); !mesh->bodyId.empty() && body != bodies.end())
            pairs.push_back({body->second, mesh});
    if (bodies.size() == 1 && meshes.size() == 1 && meshes.front()->bodyId.empty())
        pairs.push_back({bodies.begin()->second, meshes.front()});
    return pairs;
}

BodyAndMesh::Boxes BodyAndMesh::CompareBoxes() const
{
    std::optional<MetricBox> const box = MetricBox::Of(*mesh);
    if (!box)
        return {};
    Boxes const boxes = Compare(*box, MetricBox::Of(*body));
    return boxes.ratio < 1.0 / Boxes::kMost ? Compare(*box, MetricBox::Of(*body, true)) : boxes;
}

std::string BodyAndMesh::MeantUnit(double ratio) const
{
    for (int unit = 0; unit < kUnitLimit; ++unit)
    {
        double const metres = MetresOf(static_cast<UnitTypeEnum>(unit));
        char const* const text = TextOfUnit(static_cast<UnitTypeEnum>(unit));
        if (text && metres > 0.0 && std::abs(metres * ratio / mesh->metresPerUnit - 1.0) < kUnitTolerance)
            return text;
    }
    return {};
}

}  // namespace KVR
