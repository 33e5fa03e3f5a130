#include "scene/ShapeMeasures.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GProp_GProps.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <cmath>

namespace KVR
{

namespace
{

// Does what Open CASCADE may refuse; what was found until then stays.
template <class Work>
void Tried(Work const& work)
{
    try
    {
        work();
    }
    catch (Standard_Failure const&)
    {
        // The shape is as it is.
    }
}

double FiniteOr0(double number)
{
    return std::isfinite(number) ? number : 0.0;
}

void TellSurface(ShapeMeasures::Surface& fact, TopoDS_Face const& face)
{
    using Kind = ShapeMeasures::SurfaceKind;
    BRepAdaptor_Surface const surface(face, false);
    switch (surface.GetType())
    {
        case GeomAbs_Plane:
            fact.kind = Kind::kPlane;
            break;
        case GeomAbs_Cylinder:
            fact.kind = Kind::kCylinder;
            fact.radius = surface.Cylinder().Radius();
            break;
        case GeomAbs_Cone:
            fact.kind = Kind::kCone;
            break;
        case GeomAbs_Sphere:
            fact.kind = Kind::kSphere;
            fact.radius = surface.Sphere().Radius();
            break;
        case GeomAbs_Torus:
            fact.kind = Kind::kTorus;
            fact.radius = surface.Torus().MajorRadius();
            break;
        case GeomAbs_BezierSurface:
        case GeomAbs_BSplineSurface:
            fact.kind = Kind::kBSpline;
            break;
        default:
            break;
    }
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(face, properties);
    fact.area = FiniteOr0(std::abs(properties.Mass()));
}

void TellCircle(ShapeMeasures::Curve& fact, double radius, gp_Pnt const& center)
{
    fact.kind = ShapeMeasures::CurveKind::kCircle;
    fact.radius = radius;
    fact.center = {center.X(), center.Y(), center.Z()};
}

void TellCurve(ShapeMeasures::Curve& fact, TopoDS_Edge const& edge)
{
    using Kind = ShapeMeasures::CurveKind;
    if (BRep_Tool::Degenerated(edge))
        return;
    fact.kind = Kind::kOther;
    BRepAdaptor_Curve const curve(edge);
    switch (curve.GetType())
    {
        case GeomAbs_Line:
            fact.kind = Kind::kLine;
            break;
        case GeomAbs_Circle:
            TellCircle(fact, curve.Circle().Radius(), curve.Circle().Location());
            break;
        case GeomAbs_Ellipse:
        {
            gp_Elips const ellipse = curve.Ellipse();
            fact.kind = Kind::kEllipse;
            if (ellipse.MajorRadius() - ellipse.MinorRadius() <= Precision::Confusion())
                TellCircle(fact, ellipse.MajorRadius(), ellipse.Location());
            break;
        }
        case GeomAbs_BezierCurve:
        case GeomAbs_BSplineCurve:
            fact.kind = Kind::kBSpline;
            break;
        default:
            break;
    }
    if (!Precision::IsInfinite(curve.FirstParameter()) && !Precision::IsInfinite(curve.LastParameter()))
        fact.length = FiniteOr0(GCPnts_AbscissaPoint::Length(curve));
}

}  // namespace

ShapeMeasures ShapeMeasures::Of(TopoDS_Shape const& shape)
{
    ShapeMeasures measures;
    if (shape.IsNull())
        return measures;
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int i = 1; i <= faces.Extent(); ++i)
    {
        Surface& fact = measures.faces.emplace_back();
        Tried([&] { TellSurface(fact, TopoDS::Face(faces(i))); });
        measures.area += fact.area;
    }
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i)
    {
        Curve& fact = measures.edges.emplace_back();
        Tried([&] { TellCurve(fact, TopoDS::Edge(edges(i))); });
    }
    Tried(
        [&]
        {
            double sum = 0.0;
            for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next())
            {
                GProp_GProps properties;
                BRepGProp::VolumeProperties(solids.Current(), properties);
                sum += std::abs(properties.Mass());
            }
            if (sum > 0.0 && std::isfinite(sum))
                measures.volume = sum;
        });
    return measures;
}

}  // namespace KVR
