#pragma once

#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Ax2.hxx>
#include <string>
#include <vector>

class StepGeom_Axis2Placement3d;
class StepGeom_CartesianPoint;
class StepGeom_Plane;
class StepData_StepModel;
class StepShape_GeometricCurveSet;
class TCollection_HAsciiString;
class Transfer_FinderProcess;

namespace KVR
{

/// Entities of a STEP file, with the numbers as they are given.
opencascade::handle<TCollection_HAsciiString> StepString(std::string const& text);
opencascade::handle<StepGeom_CartesianPoint> StepPoint(gp_Pnt const& point);
opencascade::handle<StepGeom_Axis2Placement3d> StepAxes(gp_Ax2 const& axes);
opencascade::handle<StepGeom_Plane> StepPlane(gp_Ax2 const& axes);
/// There is at least one item.
opencascade::handle<StepRepr_HArray1OfRepresentationItem> StepArray(
    std::vector<opencascade::handle<StepRepr_RepresentationItem>> const& items);
/// The edges of shapes: chains of lines as polylines, others as the writer makes them; null without edges.
opencascade::handle<StepShape_GeometricCurveSet> StepCurves(std::string const& name,
                                                            std::vector<TopoDS_Shape> const& shapes,
                                                            opencascade::handle<Transfer_FinderProcess> const& process);

/// Adds to a model that these items are not shown: styled items and layers.
void AddInvisibility(std::vector<opencascade::handle<Standard_Transient>> const& items,
                     opencascade::handle<StepData_StepModel> const& model);

}  // namespace KVR
