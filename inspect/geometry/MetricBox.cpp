#include "inspect/geometry/MetricBox.h"

#include <BRepBndLib.hxx>
#include <Bnd_Box.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <array>
#include <cmath>

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/kernel/entity.h"
#include "scene/SceneComponent.h"

namespace KVR
{

namespace
{

std::array<double, 3> Placed(SceneGeometry const& geometry, std::array<double, 3> const& point)
{
    Matrix const& place = geometry.transform;
    std::array<double, 3> placed{};
    for (std::size_t row = 0; row < 3; ++row)
        placed[row] = geometry.metresPerUnit * (place[4 * row] * point[0] + place[4 * row + 1] * point[1] +
                                                place[4 * row + 2] * point[2] + place[4 * row + 3]);
    return placed;
}

void Include(std::optional<SceneBox>& box, std::array<double, 3> const& point)
{
    if (std::all_of(point.begin(), point.end(), [](double x) { return std::isfinite(x); }))
        box = SceneBox::Around(box, point);
}

void IncludeMesh(std::optional<SceneBox>& box, SceneGeometry const& geometry)
{
    for (unsigned long i = 0; i < geometry.mesh->VertexCount(); ++i)
    {
        PolygonVertex const vertex = geometry.mesh->VertexAt(i);
        Include(box, Placed(geometry, {vertex.x, vertex.y, vertex.z}));
    }
}

void IncludeBody(std::optional<SceneBox>& box, SceneGeometry const& geometry, bool isExact)
{
    BODY const* const body = geometry.body->Body();
    if (!body)
        return;
    Bnd_Box bounds;
    try
    {
        if (isExact)
            BRepBndLib::AddOptimal(body->Shape(), bounds, false, false);
        else
            BRepBndLib::Add(body->Shape(), bounds, false);
    }
    catch (Standard_Failure const&)
    {
        return;
    }
    if (bounds.IsVoid() || bounds.IsOpen())
        return;
    std::array<gp_Pnt, 2> const corners{bounds.CornerMin(), bounds.CornerMax()};
    for (unsigned corner = 0; corner < 8; ++corner)
        Include(box, Placed(geometry, {corners[corner & 1U].X(), corners[corner >> 1U & 1U].Y(),
                                       corners[corner >> 2U & 1U].Z()}));
}

}  // namespace

double MetricBox::Diagonal() const
{
    return std::hypot(box.high[0] - box.low[0], box.high[1] - box.low[1], box.high[2] - box.low[2]);
}

std::optional<MetricBox> MetricBox::Of(SceneGeometry const& geometry, bool isExact)
{
    std::optional<SceneBox> box;
    if (geometry.mesh)
        IncludeMesh(box, geometry);
    else if (geometry.body)
        IncludeBody(box, geometry, isExact);
    if (!box)
        return {};
    return MetricBox{*box};
}

}  // namespace KVR
