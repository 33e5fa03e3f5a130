#include "describe/BodyFacts.h"

#include <BRepBndLib.hxx>
#include <BRepGProp.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GProp_GProps.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <Geom_Curve.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>

#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"

namespace KVR
{

namespace
{

// Open CASCADE says by an exception that it cannot.
template <class Measure>
auto Measured(Measure measure) -> std::optional<decltype(measure())>
{
    MemoryWatch const watch;
    try
    {
        return measure();
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        return std::nullopt;
    }
}

TopTools_IndexedMapOfShape PartsOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, kind, parts);
    return parts;
}

// A volume, and the sums of its coordinates.
struct Moments
{
    double volume = 0.0;
    gp_XYZ first{0.0, 0.0, 0.0};
};

Moments MomentsOf(TopoDS_Shape const& shape)
{
    TopTools_IndexedMapOfShape const solids = PartsOf(shape, TopAbs_SOLID);
    Moments moments;
    for (int i = 1; i <= solids.Extent(); ++i)
    {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(solids.FindKey(i), properties);
        moments.volume += properties.Mass();
        moments.first += properties.CentreOfMass().XYZ() * properties.Mass();
    }
    return moments;
}

Bnd_Box BoxOf(TopoDS_Shape const& shape)
{
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, Standard_False, Standard_False);
    box.SetGap(0.0);
    return box;
}

std::optional<std::array<double, 3>> PointAt(curve const& kernelCurve, double parameter)
{
    if (Precision::IsInfinite(parameter))
        return std::nullopt;
    return Measured(
        [&]
        {
            gp_Pnt const point = kernelCurve.Geometry()->Value(parameter);
            return std::array{point.X(), point.Y(), point.Z()};
        });
}

unsigned long long CountOf(BODY const& body, TopAbs_ShapeEnum kind)
{
    return static_cast<unsigned long long>(PartsOf(body.Shape(), kind).Extent());
}

}  // namespace

unsigned long long SolidCount(BODY const& body)
{
    return CountOf(body, TopAbs_SOLID);
}

unsigned long long FaceCount(BODY const& body)
{
    return CountOf(body, TopAbs_FACE);
}

unsigned long long EdgeCount(BODY const& body)
{
    return CountOf(body, TopAbs_EDGE);
}

unsigned long long VertexCount(BODY const& body)
{
    return CountOf(body, TopAbs_VERTEX);
}

std::optional<double> Volume(BODY const& body)
{
    return Measured([&] { return MomentsOf(body.Shape()).volume; });
}

std::optional<double> Area(BODY const& body)
{
    auto const faces = MomentsOfFaces(body);
    return faces ? std::optional(faces->area) : std::nullopt;
}

std::optional<FaceMoments> MomentsOfFaces(BODY const& body)
{
    return Measured(
        [&]
        {
            GProp_GProps properties;
            BRepGProp::SurfaceProperties(body.Shape(), properties, Standard_True);
            gp_Pnt const centre = properties.CentreOfMass();
            return FaceMoments{properties.Mass(), {centre.X(), centre.Y(), centre.Z()}};
        });
}

std::optional<std::array<double, 3>> Centroid(BODY const& body)
{
    auto const moments = Measured([&] { return MomentsOf(body.Shape()); });
    if (!moments || !(moments->volume > 0.0))
        return std::nullopt;
    gp_XYZ const centre = moments->first / moments->volume;
    return std::array{centre.X(), centre.Y(), centre.Z()};
}

std::optional<std::array<double, 6>> BoundingBox(BODY const& body)
{
    auto const box = Measured([&] { return BoxOf(body.Shape()); });
    if (!box || box->IsVoid() || box->IsOpen())
        return std::nullopt;
    std::array<double, 6> corners{};
    box->Get(corners[0], corners[1], corners[2], corners[3], corners[4], corners[5]);
    return corners;
}

std::optional<double> Length(curve const& kernelCurve)
{
    double const first = kernelCurve.First();
    double const last = kernelCurve.Last();
    if (Precision::IsInfinite(first) || Precision::IsInfinite(last))
        return std::nullopt;
    return Measured([&]
                    { return GCPnts_AbscissaPoint::Length(GeomAdaptor_Curve(kernelCurve.Geometry(), first, last)); });
}

std::optional<std::array<double, 3>> Start(curve const& kernelCurve)
{
    return PointAt(kernelCurve, kernelCurve.First());
}

std::optional<std::array<double, 3>> End(curve const& kernelCurve)
{
    return PointAt(kernelCurve, kernelCurve.Last());
}

}  // namespace KVR
