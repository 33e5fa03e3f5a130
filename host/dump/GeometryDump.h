#pragma once

namespace KVR
{

struct DumpContext;
class IBrep;
class ICurve;
class IExtensionGeometry;
class IGeometricSet;
class IPoint;
class IPointCloud;
class ISketch;
class IWorkAxis;
class IWorkPlane;
class IWorkPoint;

// Geometry but for meshes and curve data. Each writes the members of one object; the caller opens and closes it.

void DumpBrep(DumpContext const& context, IBrep const& brep);
void DumpCurve(DumpContext const& context, ICurve const& curve);
void DumpPoint(DumpContext const& context, IPoint const& point);
void DumpPointCloud(DumpContext const& context, IPointCloud const& cloud);
void DumpSketch(DumpContext const& context, ISketch const& sketch);
void DumpGeometricSet(DumpContext const& context, IGeometricSet const& set);
void DumpExtensionGeometry(DumpContext const& context, IExtensionGeometry const& geometry);
void DumpWorkAxis(DumpContext const& context, IWorkAxis const& axis);
void DumpWorkPlane(DumpContext const& context, IWorkPlane const& plane);
void DumpWorkPoint(DumpContext const& context, IWorkPoint const& point);

}  // namespace KVR
