#include "host/dump/BodyDump.h"

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
#include <optional>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "host/dump/DumpValues.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

// Open CASCADE says by an exception that it cannot.
template <class Measure>
auto Measured(Measure measure) -> std::optional<decltype(measure())>
{
    try
    {
        return measure();
    }
    catch (Standard_Failure const&)
    {
        return std::nullopt;
    }
}

TopTools_IndexedMapOfShape PartsOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, kind, parts);
    return parts;
}

double VolumeOf(TopoDS_Shape const& shape)
{
    TopTools_IndexedMapOfShape const solids = PartsOf(shape, TopAbs_SOLID);
    double volume = 0.0;
    for (int i = 1; i <= solids.Extent(); ++i)
    {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(solids.FindKey(i), properties);
        volume += properties.Mass();
    }
    return volume;
}

double AreaOf(TopoDS_Shape const& shape)
{
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(shape, properties, Standard_True);
    return properties.Mass();
}

Bnd_Box BoxOf(TopoDS_Shape const& shape)
{
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, Standard_False, Standard_False);
    box.SetGap(0.0);
    return box;
}

void WriteBox(JsonWriter& json, std::optional<Bnd_Box> const& box)
{
    if (!box || box->IsVoid() || box->IsOpen())
        return json.Null();
    double low[3];
    double high[3];
    box->Get(low[0], low[1], low[2], high[0], high[1], high[2]);
    WriteRow(json, low[0], low[1], low[2], high[0], high[1], high[2]);
}

void WritePoint(JsonWriter& json, opencascade::handle<Geom_Curve> const& geometry, double parameter)
{
    std::optional<gp_Pnt> point;
    if (!Precision::IsInfinite(parameter))
        point = Measured([&] { return geometry->Value(parameter); });
    if (point)
        WriteRow(json, point->X(), point->Y(), point->Z());
    else
        json.Null();
}

}  // namespace

void DumpBody(JsonWriter& json, BODY const* body)
{
    if (!body)
        return json.Null();
    TopoDS_Shape const& shape = body->Shape();
    json.BeginObject();
    auto const count = [&](char const* name, TopAbs_ShapeEnum kind)
    {
        json.Key(name);
        json.Unsigned(static_cast<unsigned long long>(PartsOf(shape, kind).Extent()));
    };
    count("Solids", TopAbs_SOLID);
    count("Faces", TopAbs_FACE);
    count("Edges", TopAbs_EDGE);
    count("Vertices", TopAbs_VERTEX);
    json.Key("Volume");
    WriteValue(json, Measured([&] { return VolumeOf(shape); }));
    json.Key("Area");
    WriteValue(json, Measured([&] { return AreaOf(shape); }));
    json.Key("BoundingBox");
    WriteBox(json, Measured([&] { return BoxOf(shape); }));
    json.EndObject();
}

void DumpKernelCurve(JsonWriter& json, curve const* kernelCurve)
{
    if (!kernelCurve || kernelCurve->IsDestroyed())
        return json.Null();
    opencascade::handle<Geom_Curve> const& geometry = kernelCurve->Geometry();
    double const first = kernelCurve->First();
    double const last = kernelCurve->Last();
    json.BeginObject();
    json.Key("Length");
    std::optional<double> length;
    if (!Precision::IsInfinite(first) && !Precision::IsInfinite(last))
        length = Measured([&] { return GCPnts_AbscissaPoint::Length(GeomAdaptor_Curve(geometry, first, last)); });
    WriteValue(json, length);
    json.Key("Start");
    WritePoint(json, geometry, first);
    json.Key("End");
    WritePoint(json, geometry, last);
    json.EndObject();
}

}  // namespace KVR
