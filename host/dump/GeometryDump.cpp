#include "host/dump/GeometryDump.h"

#include "framework/api/Color.h"
#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/IBrep.h"
#include "framework/api/ICurve.h"
#include "framework/api/IExtensionGeometry.h"
#include "framework/api/IGeometricSet.h"
#include "framework/api/IPoint.h"
#include "framework/api/IPointCloud.h"
#include "framework/api/ISketch.h"
#include "framework/api/IWorkFeature.h"
#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/gmk_array.h"
#include "host/dump/BodyDump.h"
#include "host/dump/CurveDataDump.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

void DumpBrep(DumpContext const& context, IBrep const& brep)
{
    DumpGeometry(context, "IBrep", brep);
    Members members(context.json, brep);
    members.Value("SrcGeomType", &IBrep::SrcGeomType).Value("BrepType_ex", &IBrep::BrepType_ex);
    context.json.Key("IsBodyDetached");
    auto const* const detachable = dynamic_cast<DetachableGMKBrep const*>(&brep);
    context.json.Bool(detachable && detachable->IsBodyDetached());
    context.json.Key("Body");
    DumpBody(context.json, brep.Body());
    DumpStylesMap(context, brep);
    members.Pointer("PersistentIDsMap", &ISubObjectPersistentIds::PersistentIDsMap,
                    [&](DataIdToPersistentIdMap const& map)
                    {
                        context.json.BeginObject();
                        for (unsigned long long i = 0; i < map.Size(); ++i)
                        {
                            context.json.Key(map.DataIdAt(i).View());
                            WriteValue(context.json, map.PersistentIdAt(i));
                        }
                        context.json.EndObject();
                    });
}

void DumpCurve(DumpContext const& context, ICurve const& curve)
{
    DumpGeometry(context, "ICurve", curve);
    DumpStylesMap(context, curve);
    context.json.Key("KernelCurves");
    context.json.BeginList();
    for (auto const* const kernelCurve : curve.KernelCurves())
        DumpKernelCurve(context.json, kernelCurve);
    context.json.EndList();
    Members(context.json, curve)
        .List("CurveData", &ICurve::CurveDataCount,
              [&](unsigned long long i)
              { DumpCurveData(context, Ask([&] { return curve.CurveDataAt(i); }).value_or(nullptr)); });
}

void DumpPoint(DumpContext const& context, IPoint const& point)
{
    DumpGeometry(context, "IPoint", point);
    Members(context.json, point)
        .Value("X", &IPoint::X)
        .Value("Y", &IPoint::Y)
        .Value("Z", &IPoint::Z)
        .Optional("PointColor", &IPoint::PointColor)
        .Value("MarkerStyleId", &IPoint::MarkerStyleId)
        .Optional("PointSize", &IPoint::PointSize);
}

void DumpPointCloud(DumpContext const& context, IPointCloud const& cloud)
{
    DumpGeometry(context, "IPointCloud", cloud);
    Members members(context.json, cloud);
    members.Value("PointCount", &IPointCloud::PointCount);
    if (context.options.summary)
        return;
    members.List("Points", &IPointCloud::PointCount,
                 [&](std::size_t i)
                 {
                     double x = 0.0;
                     double y = 0.0;
                     double z = 0.0;
                     if (Members<IPointCloud>::Asked([&] { cloud.Point(i, &x, &y, &z); }))
                         WriteRow(context.json, x, y, z);
                     else
                         context.json.Null();
                 });
}

void DumpSketch(DumpContext const& context, ISketch const& sketch)
{
    DumpGeometry(context, "ISketch", sketch);
    Members(context.json, sketch)
        .Value("SketchType", &ISketch::SketchType)
        .Value("CurveIds", &ISketch::CurveIds)
        .Value("PointIds", &ISketch::PointIds)
        .Items("ChildIds", &ISketch::ChildCount, &ISketch::ChildIdAt);
}

void DumpGeometricSet(DumpContext const& context, IGeometricSet const& set)
{
    DumpGeometry(context, "IGeometricSet", set);
    Members(context.json, set).Items("Children", &IGeometricSet::ChildCount, &IGeometricSet::ChildAt);
}

void DumpExtensionGeometry(DumpContext const& context, IExtensionGeometry const& geometry)
{
    DumpGeometry(context, "IExtensionGeometry", geometry);
    Members(context.json, geometry).Items("Children", &IExtensionGeometry::ChildCount, &IExtensionGeometry::ChildAt);
}

void DumpWorkAxis(DumpContext const& context, IWorkAxis const& axis)
{
    DumpGeometry(context, "IWorkAxis", axis);
    Members(context.json, axis)
        .Triple("StartPoint", &IWorkAxis::StartPoint)
        .Triple("Axis", &IWorkAxis::Axis)
        .Triple("EndPoint", &IWorkAxis::EndPoint);
}

void DumpWorkPlane(DumpContext const& context, IWorkPlane const& plane)
{
    DumpGeometry(context, "IWorkPlane", plane);
    Members(context.json, plane)
        .Triple("Origin", &IWorkPlane::Origin)
        .Triple("Normal", &IWorkPlane::Normal)
        .Triple("Reference", &IWorkPlane::Reference)
        .Sextuple("DisplayRange", &IWorkPlane::DisplayRange);
}

void DumpWorkPoint(DumpContext const& context, IWorkPoint const& point)
{
    DumpGeometry(context, "IWorkPoint", point);
    Members(context.json, point).Triple("Position", &IWorkPoint::Position);
}

}  // namespace KVR
