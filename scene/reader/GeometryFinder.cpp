#include "scene/reader/GeometryFinder.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

template <class Object>
void GeometryFinder::Dress(Object* object, char const* name, GeometryKind kind)
{
    geometry.kind = kind;
    geometry.className = name;
    geometry.isVisible = object->IsVisible();
    styles = object->Styles();
    if (auto const* const placed = dynamic_cast<ITransformable const*>(object))
        geometry.transform = PlaceOf(placed->Transform());
}

void GeometryFinder::Visit(IBrep* object)
{
    Dress(object, "IBrep", GeometryKind::kBody);
    geometry.body = object;
}
void GeometryFinder::Visit(IPolygonMesh* object)
{
    Dress(object, "IPolygonMesh", GeometryKind::kMesh);
    geometry.mesh = object;
}
void GeometryFinder::Visit(ICurve* object)
{
    Dress(object, "ICurve", GeometryKind::kCurve);
    geometry.curve = object;
}
void GeometryFinder::Visit(IPoint* object)
{
    Dress(object, "IPoint", GeometryKind::kPoint);
    geometry.point = object;
}
void GeometryFinder::Visit(IPointCloud* object)
{
    Dress(object, "IPointCloud", GeometryKind::kCloud);
    geometry.cloud = object;
}
void GeometryFinder::Visit(ISketch* object)
{
    Dress(object, "ISketch", GeometryKind::kOther);
}
void GeometryFinder::Visit(IWorkAxis* object)
{
    Dress(object, "IWorkAxis", GeometryKind::kOther);
}
void GeometryFinder::Visit(IWorkPlane* object)
{
    Dress(object, "IWorkPlane", GeometryKind::kOther);
}
void GeometryFinder::Visit(IWorkPoint* object)
{
    Dress(object, "IWorkPoint", GeometryKind::kOther);
}
void GeometryFinder::Visit(IAnnotationCallout* object)
{
    geometry.className = "IAnnotationCallout";
    geometry.isVisible = object->IsVisible();
}

}  // namespace KVR
