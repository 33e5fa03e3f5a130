#include "exchange/export/GeometryFinder.h"

#include <algorithm>
#include <cmath>

#include "framework/api/kvr_api.h"

namespace KVR
{

Matrix PlaceOf(Matrix3d const* transform)
{
    constexpr double kMost = 1e30;
    if (!transform)
        return kIdentity;
    Matrix const& elements = transform->Elements();
    bool const isUsable =
        std::all_of(elements.begin(), elements.end(), [](double element) { return std::abs(element) < kMost; });
    if (!isUsable)
        return kIdentity;
    // No format has a place for a perspective.
    Matrix affine = elements;
    std::copy(kIdentity.begin() + 12, kIdentity.end(), affine.begin() + 12);
    return affine;
}

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
    Dress(object, "IPointCloud", GeometryKind::kOther);
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
