#pragma once

#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Ax2.hxx>
#include <string>
#include <vector>

class StepGeom_Axis2Placement3d;
class StepGeom_CartesianPoint;
class STEPCAFControl_Writer;
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
/// The edges of shapes: chains of lines as polylines, others as the writer makes them; null without edges.
opencascade::handle<StepShape_GeometricCurveSet> StepCurves(std::string const& name,
                                                            std::vector<TopoDS_Shape> const& shapes,
                                                            opencascade::handle<Transfer_FinderProcess> const& process);

/// Adds to a model that these items are not shown: styled items and layers.
void AddInvisibility(std::vector<opencascade::handle<Standard_Transient>> const& items,
                     opencascade::handle<StepData_StepModel> const& model);
/// What defines the shape of a part or an assembly of the document; null for another shape.
opencascade::handle<StepShape_ShapeDefinitionRepresentation> StepDefinitionOf(STEPCAFControl_Writer& writer,
                                                                              TopoDS_Shape const& shape);

}  // namespace KVR
