#pragma once

#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepShape_GeometricSetSelect.hxx>
#include <TopoDS_Shape.hxx>
#include <Transfer_FinderProcess.hxx>
#include <gp_Ax2.hxx>
#include <map>
#include <string>
#include <utility>
#include <vector>

class StepGeom_Axis2Placement3d;
class StepGeom_CartesianPoint;
class StepGeom_Plane;
class StepData_StepModel;
class StepShape_GeometricCurveSet;
class TCollection_HAsciiString;
class TopoDS_Edge;

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

/// Sets of curves, of which curves that are the same share their entities.
class StepCurveSets
{
public:
    explicit StepCurveSets(opencascade::handle<Transfer_FinderProcess> process) : m_process(std::move(process)) {}

    /// The edges of shapes: chains of lines as polylines, others as the writer makes them; null without edges.
    opencascade::handle<StepShape_GeometricCurveSet> Set(std::string const& name,
                                                         std::vector<TopoDS_Shape> const& shapes);

private:
    void AddEdge(TopoDS_Edge const& edge, std::vector<StepShape_GeometricSetSelect>& selects);

    opencascade::handle<Transfer_FinderProcess> m_process;
    /// By the coordinates of the corners of a polyline; or by those of a circle, its axes and its ends.
    std::map<std::vector<double>, StepShape_GeometricSetSelect> m_known;
};

/// Adds to a model that these items are not shown: styled items and layers.
void AddInvisibility(std::vector<opencascade::handle<Standard_Transient>> const& items,
                     opencascade::handle<StepData_StepModel> const& model);

}  // namespace KVR
