#include <stdexcept>

#include "describe/BodyFacts.h"
#include "describe/Rows.h"
#include "framework/api/Color.h"
#include "framework/api/IBrep.h"
#include "framework/api/ICurve.h"
#include "framework/api/IExtensionGeometry.h"
#include "framework/api/IGeometricSet.h"
#include "framework/api/IPoint.h"
#include "framework/api/IPointCloud.h"
#include "framework/api/ISketch.h"
#include "framework/api/IWorkFeature.h"
#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"

// Geometry but for meshes and curve data.

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;

bool IsBodyDetached(IBrep const& brep)
{
    auto const* const detachable = dynamic_cast<DetachableGMKBrep const*>(&brep);
    return detachable && detachable->IsBodyDetached();
}

bool HasDataInterface(IBrep const& brep)
{
    return brep.BodyDI() != nullptr;
}

constexpr Row kBodyRows[] = {
    Value<&SolidCount>("Solids").Measured(),   Value<&FaceCount>("Faces").Measured(),
    Value<&EdgeCount>("Edges").Measured(),     Value<&VertexCount>("Vertices").Measured(),
    Value<&Volume>("Volume").Mass(),           Value<&Area>("Area").Mass(),
    Value<&BoundingBox>("BoundingBox").Mass(),
};

constexpr Row kBrepRows[] = {
    Inherits<IBrep, IGeometry>(),
    Value<&IBrep::SrcGeomType>("SrcGeomType"),
    Value<&IBrep::BrepType_ex>("BrepType_ex"),
    Value<&IsBodyDetached>("IsBodyDetached"),
    Value<&IBrep::Body>("Body"),
    Value<&HasDataInterface, &IBrep::BodyDI>("HasBodyDI").NotInDump(),
    Inherits<IBrep, ISubEntityStyles>(),
    Inherits<IBrep, ISubObjectPersistentIds>(),
};

constexpr Row kKernelCurveRows[] = {
    Value<&Length>("Length").Measured(),
    Value<&Start>("Start").Measured(),
    Value<&End>("End").Measured(),
};

constexpr Row kCurveRows[] = {
    Inherits<ICurve, IGeometry>(),
    Inherits<ICurve, ISubEntityStyles>(),
    Value<&ICurve::KernelCurves>("KernelCurves"),
    List<&ICurve::CurveDataCount, &ICurve::CurveDataAt>("CurveData"),
};

constexpr Row kPointRows[] = {
    Inherits<IPoint, IGeometry>(),
    Value<&IPoint::X>("X"),
    Value<&IPoint::Y>("Y"),
    Value<&IPoint::Z>("Z"),
    Value<&IPoint::PointColor>("PointColor"),
    Value<&IPoint::MarkerStyleId>("MarkerStyleId").RefersTo(Refers::Elsewhere),
    Value<&IPoint::PointSize>("PointSize"),
};

constexpr Row kPointCloudRows[] = {
    Inherits<IPointCloud, IGeometry>(),
    Value<&IPointCloud::PointCount>("PointCount"),
    List<&IPointCloud::PointCount, &IPointCloud::Point>("Points").Long("PointCount"),
};

// The interface allows a sketch to refuse an index that is below the count.
std::optional<UTF8String> ChildId(ISketch const& sketch, unsigned long long index)
{
    try
    {
        return sketch.ChildIdAt(index);
    }
    catch (std::out_of_range const&)
    {
        return std::nullopt;
    }
}

constexpr Row kSketchRows[] = {
    Inherits<ISketch, IGeometry>(),
    Value<&ISketch::SketchType>("SketchType"),
    Value<&ISketch::CurveIds>("CurveIds").RefersTo(Refers::Child),
    Value<&ISketch::PointIds>("PointIds").RefersTo(Refers::Child),
    // The curves and points once more.
    List<&ISketch::ChildCount, &ChildId, &ISketch::ChildIdAt>("ChildIds").RefersTo(Refers::Elsewhere),
};

constexpr Row kGeometricSetRows[] = {
    Inherits<IGeometricSet, IGeometry>(),
    List<&IGeometricSet::ChildCount, &IGeometricSet::ChildAt>("Children").RefersTo(Refers::Child),
};

constexpr Row kExtensionGeometryRows[] = {
    Inherits<IExtensionGeometry, IGeometry>(),
    List<&IExtensionGeometry::ChildCount, &IExtensionGeometry::ChildAt>("Children").RefersTo(Refers::Child),
};

constexpr Row kWorkAxisRows[] = {
    Inherits<IWorkAxis, IGeometry>(),
    Value<&IWorkAxis::StartPoint>("StartPoint"),
    Value<&IWorkAxis::Axis>("Axis"),
    Value<&IWorkAxis::EndPoint>("EndPoint"),
};

constexpr Row kWorkPlaneRows[] = {
    Inherits<IWorkPlane, IGeometry>(),
    Value<&IWorkPlane::Origin>("Origin"),
    Value<&IWorkPlane::Normal>("Normal"),
    Value<&IWorkPlane::Reference>("Reference"),
    Value<&IWorkPlane::DisplayRange>("DisplayRange"),
};

constexpr Row kWorkPointRows[] = {
    Inherits<IWorkPoint, IGeometry>(),
    Value<&IWorkPoint::Position>("Position"),
};

}  // namespace

Interface const TableOf<IBrep>::kTable = {"IBrep", kBrepRows, kNamed};
Interface const TableOf<ICurve>::kTable = {"ICurve", kCurveRows, kNamed};
Interface const TableOf<IPoint>::kTable = {"IPoint", kPointRows, kNamed};
Interface const TableOf<IPointCloud>::kTable = {"IPointCloud", kPointCloudRows, kNamed};
Interface const TableOf<ISketch>::kTable = {"ISketch", kSketchRows, kNamed};
Interface const TableOf<IGeometricSet>::kTable = {"IGeometricSet", kGeometricSetRows, kNamed};
Interface const TableOf<IExtensionGeometry>::kTable = {"IExtensionGeometry", kExtensionGeometryRows, kNamed};
Interface const TableOf<IWorkAxis>::kTable = {"IWorkAxis", kWorkAxisRows, kNamed};
Interface const TableOf<IWorkPlane>::kTable = {"IWorkPlane", kWorkPlaneRows, kNamed};
Interface const TableOf<IWorkPoint>::kTable = {"IWorkPoint", kWorkPointRows, kNamed};
Interface const TableOf<BODY>::kTable = {"Body", kBodyRows};
Interface const TableOf<curve>::kTable = {"KernelCurve", kKernelCurveRows};

}  // namespace KVR
