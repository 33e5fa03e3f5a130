#include "exchange/export/StepEntities.h"

#include <BRep_Tool.hxx>
#include <Geom_Circle.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_Axis2Placement3d.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_Direction.hxx>
#include <StepGeom_HArray1OfCartesianPoint.hxx>
#include <StepGeom_Plane.hxx>
#include <StepGeom_Polyline.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_GeometricCurveSet.hxx>
#include <StepShape_GeometricSetSelect.hxx>
#include <StepShape_HArray1OfGeometricSetSelect.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepVisual_HArray1OfInvisibleItem.hxx>
#include <StepVisual_Invisibility.hxx>
#include <StepVisual_InvisibleItem.hxx>
#include <TColStd_HArray1OfReal.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDSToStep_MakeGeometricCurveSet.hxx>
#include <TopoDS_Edge.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XSControl_TransferWriter.hxx>
#include <XSControl_WorkSession.hxx>

#include "framework/kernel/tessellation/EdgeCorners.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Selects = std::vector<StepShape_GeometricSetSelect>;

handle<StepGeom_Direction> StepDirection(gp_Dir const& direction)
{
    handle<TColStd_HArray1OfReal> const ratios = new TColStd_HArray1OfReal(1, 3);
    for (int i = 1; i <= 3; ++i)
        ratios->SetValue(i, direction.Coord(i));
    handle<StepGeom_Direction> made = new StepGeom_Direction;
    made->Init(StepString(""), ratios);
    return made;
}

StepShape_GeometricSetSelect PolylineOf(std::vector<gp_Pnt> const& corners)
{
    handle<StepGeom_HArray1OfCartesianPoint> const points =
        new StepGeom_HArray1OfCartesianPoint(1, static_cast<int>(corners.size()));
    for (std::size_t i = 0; i < corners.size(); ++i)
        points->SetValue(static_cast<int>(i) + 1, StepPoint(corners[i]));
    handle<StepGeom_Polyline> const polyline = new StepGeom_Polyline;
    polyline->Init(StepString(""), points);
    StepShape_GeometricSetSelect select;
    select.SetValue(polyline);
    return select;
}

void AppendTo(std::vector<double>& key, gp_XYZ const& triple)
{
    key.insert(key.end(), {triple.X(), triple.Y(), triple.Z()});
}

// What tells a circle from all others; empty for another curve.
std::vector<double> KeyOfCircle(TopoDS_Edge const& edge)
{
    std::vector<double> key(2);
    auto const circle = handle<Geom_Circle>::DownCast(BRep_Tool::Curve(edge, key[0], key[1]));
    if (circle.IsNull())
        return {};
    key.insert(key.end(), {circle->Radius(), edge.Orientation() == TopAbs_REVERSED ? 1.0 : 0.0});
    for (gp_XYZ const& triple : {circle->Position().Location().XYZ(), circle->Position().Direction().XYZ(),
                                 circle->Position().XDirection().XYZ()})
        AppendTo(key, triple);
    // No polyline has as many numbers.
    return key;
}

}  // namespace

handle<TCollection_HAsciiString> StepString(std::string const& text)
{
    return new TCollection_HAsciiString(text.c_str());
}

handle<StepGeom_CartesianPoint> StepPoint(gp_Pnt const& point)
{
    handle<StepGeom_CartesianPoint> made = new StepGeom_CartesianPoint;
    made->Init3D(StepString(""), point.X(), point.Y(), point.Z());
    return made;
}

handle<StepGeom_Axis2Placement3d> StepAxes(gp_Ax2 const& axes)
{
    handle<StepGeom_Axis2Placement3d> made = new StepGeom_Axis2Placement3d;
    made->Init(StepString(""), StepPoint(axes.Location()), Standard_True, StepDirection(axes.Direction()),
               Standard_True, StepDirection(axes.XDirection()));
    return made;
}

void StepCurveSets::AddEdge(TopoDS_Edge const& edge, Selects& selects)
{
    std::vector<gp_Pnt> const corners = CornersOf(edge);
    std::vector<double> key;
    for (gp_Pnt const& corner : corners)
        AppendTo(key, corner.XYZ());
    if (corners.empty())
        key = KeyOfCircle(edge);
    if (auto const known = m_known.find(key); !key.empty() && known != m_known.end())
        return selects.push_back(known->second);
    if (!corners.empty())
        return selects.push_back(m_known[key] = PolylineOf(corners));
    TopoDSToStep_MakeGeometricCurveSet const maker(edge, m_process);
    if (!maker.IsDone())
        return;
    handle<StepShape_GeometricCurveSet> const& made = maker.Value();
    for (int i = 1; i <= made->NbElements(); ++i)
        selects.push_back(made->ElementsValue(i));
    if (!key.empty() && made->NbElements() == 1)
        m_known[key] = made->ElementsValue(1);
}

handle<StepShape_GeometricCurveSet> StepCurveSets::Set(std::string const& name, std::vector<TopoDS_Shape> const& shapes)
{
    Selects selects;
    for (TopoDS_Shape const& shape : shapes)
    {
        for (TopExp_Explorer edges(shape, TopAbs_EDGE); edges.More(); edges.Next())
            AddEdge(TopoDS::Edge(edges.Current()), selects);
    }
    if (selects.empty())
        return {};
    handle<StepShape_HArray1OfGeometricSetSelect> const elements =
        new StepShape_HArray1OfGeometricSetSelect(1, static_cast<int>(selects.size()));
    for (std::size_t i = 0; i < selects.size(); ++i)
        elements->SetValue(static_cast<int>(i) + 1, selects[i]);
    handle<StepShape_GeometricCurveSet> set = new StepShape_GeometricCurveSet;
    set->Init(StepString(name), elements);
    return set;
}

handle<StepGeom_Plane> StepPlane(gp_Ax2 const& axes)
{
    handle<StepGeom_Plane> plane = new StepGeom_Plane;
    plane->Init(StepString(""), StepAxes(axes));
    return plane;
}

handle<StepRepr_HArray1OfRepresentationItem> StepArray(std::vector<handle<StepRepr_RepresentationItem>> const& items)
{
    handle<StepRepr_HArray1OfRepresentationItem> array =
        new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
        array->SetValue(static_cast<int>(i) + 1, items[i]);
    return array;
}

void AddInvisibility(std::vector<handle<Standard_Transient>> const& items, handle<StepData_StepModel> const& model)
{
    handle<StepVisual_HArray1OfInvisibleItem> const selects =
        new StepVisual_HArray1OfInvisibleItem(1, static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        StepVisual_InvisibleItem select;
        select.SetValue(items[i]);
        selects->SetValue(static_cast<int>(i) + 1, select);
    }
    handle<StepVisual_Invisibility> const invisibility = new StepVisual_Invisibility;
    invisibility->Init(selects);
    model->AddEntity(invisibility);
}

}  // namespace KVR
