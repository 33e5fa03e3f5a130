#include "exchange/export/PartShapes.h"

#include <BRepBuilderAPI_MakeVertex.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_TShape.hxx>
#include <cmath>
#include <memory>
#include <optional>

#include "exchange/export/MeshShell.h"
#include "exchange/export/ShapePlacement.h"
#include "framework/api/IBrep.h"
#include "framework/api/IPoint.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/entity.h"
#include "scene/CurveShape.h"

namespace KVR
{

namespace
{

// Each takes some kilobytes of memory.
constexpr std::size_t kMostMeshFaces = 250'000;

char const* KindOf(SceneGeometry const& geometry)
{
    if (geometry.className == "IPointCloud")
        return "point clouds";
    if (geometry.className == "ISketch")
        return "sketches";
    return "work features";
}

}  // namespace

PartShapes::PartShapes(Options options, NotCarriedCounts& notCarried)
    : m_options(std::move(options)), m_notCarried(notCarried)
{
}

std::vector<PartItem> PartShapes::Of(SceneComponent const& component, gp_Mat const& change)
{
    gp_Mat unit;
    unit.SetIdentity();
    NotCarriedCounts ignored;
    NotCarriedCounts& notCarried = m_counted.insert(&component).second ? m_notCarried : ignored;
    std::vector<PartItem> items;
    for (SceneGeometry const& geometry : component.geometry)
    {
        // Callouts are no shapes; who draws them counts them.
        if (geometry.className == "IAnnotationCallout")
            continue;
        if (m_options.watch && m_options.watch->LeavesOut(geometry))
            continue;
        GeometryWatch nobody;
        auto const work = (m_options.watch ? *m_options.watch : nobody).Begin(geometry);
        PartItem item;
        item.geometry = &geometry;
        MemoryWatch const memory;
        try
        {
            TopoDS_Shape const shape = ShapeOf(geometry, notCarried);
            if (shape.IsNull())
                continue;
            double const ratio = geometry.metresPerUnit / m_options.metresPerUnit;
            double const scale = std::abs(ratio - 1.0) < 1e-12 ? 1.0 : ratio;
            auto const placement = ShapePlacement::Of(geometry.transform, scale, change);
            if (!placement)
            {
                notCarried.Add("shapes whose transform leaves nothing of them");
                continue;
            }
            bool const stays =
                placement->IsRigid() && geometry.transform == kIdentity && ElementsOf(change) == ElementsOf(unit);
            Place(item, shape, *placement, stays);
        }
        catch (Standard_Failure const& failure)
        {
            memory.Check(failure);
            notCarried.Add("shapes that Open CASCADE cannot make");
            continue;
        }
        items.push_back(std::move(item));
    }
    return items;
}

TopoDS_Shape PartShapes::ShapeOf(SceneGeometry const& geometry, NotCarriedCounts& notCarried)
{
    switch (geometry.kind)
    {
        case GeometryKind::kBody:
            if (BODY const* const body = geometry.body->Body())
                return body->Shape();
            notCarried.Add("bodies without a shape");
            return {};
        case GeometryKind::kCurve:
        {
            TopoDS_Shape shape;
            unsigned long long const missing = MakeCurveShape(*geometry.curve, shape);
            notCarried.Add("pieces of curves", missing);
            if (shape.IsNull() && missing == 0)
                notCarried.Add("empty curves");
            return shape;
        }
        case GeometryKind::kPoint:
        {
            gp_Pnt const place(geometry.point->X(), geometry.point->Y(), geometry.point->Z());
            if (std::isfinite(place.X()) && std::isfinite(place.Y()) && std::isfinite(place.Z()))
                return BRepBuilderAPI_MakeVertex(place).Shape();
            notCarried.Add("points that are nowhere");
            return {};
        }
        case GeometryKind::kMesh:
        {
            // The mesh of a body says nothing that the body does not.
            if (!geometry.bodyId.empty())
                return {};
            if (m_options.meshes == Options::Meshes::kFaces)
                return FacesOf(*geometry.mesh, notCarried);
            if (m_options.meshes == Options::Meshes::kCount)
                notCarried.Add("meshes without a body");
            return {};
        }
        default:
            notCarried.Add(KindOf(geometry));
            return {};
    }
}

TopoDS_Shape PartShapes::FacesOf(IPolygonMesh const& mesh, NotCarriedCounts& notCarried)
{
    // A polygon that is no triangle counts for one, which is near enough.
    std::size_t const triangles = mesh.PolygonCount();
    if (triangles > kMostMeshFaces - m_triangles)
    {
        notCarried.Add("meshes beyond 250,000 flat faces");
        return {};
    }
    m_triangles += triangles;
    TopoDS_Shape const shell = MeshShell(mesh);
    notCarried.Add("meshes without a body", shell.IsNull() ? 1 : 0);
    return shell;
}

void PartShapes::Place(PartItem& item, TopoDS_Shape const& shape, ShapePlacement const& placement, bool stays)
{
    std::optional<ChangedShape> copy;
    if (!placement.IsRigid() || IsUsed(shape))
        copy.emplace(shape, placement.change);
    auto const placed = [&](TopoDS_Shape const& part)
    { return stays || part.IsNull() ? part : part.Moved(placement.motion); };
    item.shape = placed(copy ? copy->Shape() : shape);
    BODY const* const body = item.geometry->body ? item.geometry->body->Body() : nullptr;
    if (!body)
        return;
    TakeSubShapes(item, *body, item.geometry->body->StylesMap());
    auto const moved = [&](TopoDS_Shape& part) { part = placed(copy ? copy->PartOf(part) : part); };
    for (auto& [part, style] : item.subStyles)
        moved(part);
    for (auto& [id, part] : item.subShapes)
        moved(part);
    std::erase_if(item.subStyles, [](auto const& entry) { return entry.first.IsNull(); });
    std::erase_if(item.subShapes, [](auto const& entry) { return entry.second.IsNull(); });
}

void PartShapes::TakeSubShapes(PartItem& item, BODY const& body, SubEntityToStylesMap const* styles) const
{
    if ((!styles || styles->Size() == 0) && m_options.wantedSubShapes.empty())
        return;
    auto const take = [&](auto const& parts, std::vector<BODY::SubId> const& ids)
    {
        for (BODY::SubId const& sub : ids)
        {
            if (sub.place >= parts.size())
                continue;
            TopoDS_Shape const& part = parts[sub.place]->Shape();
            IdSet found;
            if (styles && styles->Styles(UTF8String(sub.dataId), found) == kIsValueSpecified_Yes && !found.IsEmpty())
                item.subStyles.emplace_back(part, found.At(0).Value());
            if (m_options.wantedSubShapes.count(sub.dataId) > 0)
                item.subShapes.emplace_back(sub.dataId, part);
        }
    };
    take(body.FaceList(), body.FaceDataIds());
    take(body.EdgeList(), body.EdgeDataIds());
}

// Whether the shape or a face of it is in use; from here on it is.
bool PartShapes::IsUsed(TopoDS_Shape const& shape)
{
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    bool isUsed = !m_used.insert(shape.TShape().get()).second;
    for (int i = 1; i <= faces.Extent(); ++i)
    {
        // A body that is a face is in its own list.
        if (!faces(i).IsPartner(shape))
            isUsed = !m_used.insert(faces(i).TShape().get()).second || isUsed;
    }
    return isUsed;
}

}  // namespace KVR
