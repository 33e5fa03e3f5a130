#include "tests/support/RareShapes.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRep_Builder.hxx>
#include <BRep_ListOfPointRepresentation.hxx>
#include <BRep_PointOnCurve.hxx>
#include <BRep_PointOnCurveOnSurface.hxx>
#include <BRep_PointOnSurface.hxx>
#include <BRep_TVertex.hxx>
#include <Geom2d_BSplineCurve.hxx>
#include <Geom2d_BezierCurve.hxx>
#include <Geom2d_Circle.hxx>
#include <Geom2d_Ellipse.hxx>
#include <Geom2d_Hyperbola.hxx>
#include <Geom2d_Line.hxx>
#include <Geom2d_OffsetCurve.hxx>
#include <Geom2d_Parabola.hxx>
#include <Geom2d_TrimmedCurve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_BezierSurface.hxx>
#include <Geom_Circle.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Hyperbola.hxx>
#include <Geom_Line.hxx>
#include <Geom_OffsetCurve.hxx>
#include <Geom_OffsetSurface.hxx>
#include <Geom_Parabola.hxx>
#include <Geom_Plane.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_SurfaceOfLinearExtrusion.hxx>
#include <Geom_SurfaceOfRevolution.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColStd_Array2OfReal.hxx>
#include <TColStd_HArray1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TColgp_Array1OfPnt2d.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <TopoDS_CompSolid.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Vertex.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Ax22d.hxx>
#include <gp_Trsf.hxx>

namespace KVR::Test
{

namespace
{

using opencascade::handle;

// Poles, knots and weights of a Bezier or B-spline curve with four poles, of degree 2 or 3.
template <class Points>
Points Poles(int count)
{
    Points poles(1, count);
    for (int i = 1; i <= count; ++i)
    {
        poles(i).SetX(i);
        poles(i).SetY(i % 2);
    }
    return poles;
}

TColStd_Array1OfReal Weights(int count)
{
    TColStd_Array1OfReal weights(1, count);
    for (int i = 1; i <= count; ++i)
        weights(i) = 1.0 + 0.5 * (i % 2);
    return weights;
}

TColStd_Array1OfReal Knots(int count)
{
    TColStd_Array1OfReal knots(1, count);
    for (int i = 1; i <= count; ++i)
        knots(i) = i - 1;
    return knots;
}

TColStd_Array1OfInteger Multiplicities(int count, int ends)
{
    TColStd_Array1OfInteger multiplicities(1, count);
    multiplicities.Init(1);
    multiplicities(1) = multiplicities(count) = ends;
    return multiplicities;
}

std::vector<handle<Geom_Curve>> Curves()
{
    gp_Ax2 const axes;
    std::vector<handle<Geom_Curve>> curves = {
        new Geom_Line(gp_Pnt(1, 2, 3), gp_Dir(0, 0, 1)),
        new Geom_Circle(axes, 2),
        new Geom_Ellipse(axes, 3, 2),
        new Geom_Parabola(axes, 1),
        new Geom_Hyperbola(axes, 2, 1),
        new Geom_BezierCurve(Poles<TColgp_Array1OfPnt>(3)),
        new Geom_BezierCurve(Poles<TColgp_Array1OfPnt>(3), Weights(3)),
        new Geom_BSplineCurve(Poles<TColgp_Array1OfPnt>(4), Knots(3), Multiplicities(3, 3), 2),
        new Geom_BSplineCurve(Poles<TColgp_Array1OfPnt>(4), Weights(4), Knots(5), Multiplicities(5, 1), 2,
                              Standard_True),
    };
    curves.push_back(new Geom_TrimmedCurve(curves[1], 0.5, 1.5));
    curves.push_back(new Geom_OffsetCurve(curves[1], 0.25, gp_Dir(0, 0, 1)));
    curves.push_back(new Geom_TrimmedCurve(new Geom_OffsetCurve(curves[8], 0.25, gp_Dir(0, 0, 1)), 0.5, 1.5));
    return curves;
}

std::vector<handle<Geom2d_Curve>> PlaneCurves()
{
    gp_Ax22d const axes;
    std::vector<handle<Geom2d_Curve>> curves = {
        new Geom2d_Line(gp_Pnt2d(1, 2), gp_Dir2d(0, 1)),
        new Geom2d_Circle(axes, 2),
        new Geom2d_Ellipse(axes, 3, 2),
        new Geom2d_Parabola(axes, 1),
        new Geom2d_Hyperbola(axes, 2, 1),
        new Geom2d_BezierCurve(Poles<TColgp_Array1OfPnt2d>(3)),
        new Geom2d_BezierCurve(Poles<TColgp_Array1OfPnt2d>(3), Weights(3)),
        new Geom2d_BSplineCurve(Poles<TColgp_Array1OfPnt2d>(4), Knots(3), Multiplicities(3, 3), 2),
        new Geom2d_BSplineCurve(Poles<TColgp_Array1OfPnt2d>(4), Weights(4), Knots(5), Multiplicities(5, 1), 2,
                                Standard_True),
    };
    curves.push_back(new Geom2d_TrimmedCurve(curves[1], 0.5, 1.5));
    curves.push_back(new Geom2d_OffsetCurve(curves[1], 0.25));
    curves.push_back(new Geom2d_TrimmedCurve(new Geom2d_OffsetCurve(curves[8], 0.25), 0.5, 1.5));
    return curves;
}

TColgp_Array2OfPnt Net(int rows, int columns)
{
    TColgp_Array2OfPnt net(1, rows, 1, columns);
    for (int i = 1; i <= rows; ++i)
    {
        for (int k = 1; k <= columns; ++k)
            net(i, k) = gp_Pnt(i, k, i * k % 3);
    }
    return net;
}

TColStd_Array2OfReal NetWeights(int rows, int columns)
{
    TColStd_Array2OfReal weights(1, rows, 1, columns);
    for (int i = 1; i <= rows; ++i)
    {
        for (int k = 1; k <= columns; ++k)
            weights(i, k) = 1.0 + 0.5 * ((i + k) % 2);
    }
    return weights;
}

std::vector<handle<Geom_Surface>> Surfaces()
{
    gp_Ax3 const axes;
    handle<Geom_Curve> const profile =
        new Geom_TrimmedCurve(new Geom_Circle(gp_Ax2(gp_Pnt(5, 0, 0), gp_Dir(0, 1, 0)), 1), 0, 1);
    std::vector<handle<Geom_Surface>> surfaces = {
        new Geom_Plane(axes),
        new Geom_CylindricalSurface(axes, 2),
        new Geom_ConicalSurface(axes, 0.5, 2),
        new Geom_SphericalSurface(axes, 2),
        new Geom_ToroidalSurface(axes, 3, 1),
        new Geom_SurfaceOfLinearExtrusion(profile, gp_Dir(0, 0, 1)),
        new Geom_SurfaceOfRevolution(profile, gp_Ax1()),
        new Geom_BezierSurface(Net(3, 2)),
        new Geom_BezierSurface(Net(2, 3), NetWeights(2, 3)),
        new Geom_BSplineSurface(Net(4, 2), Knots(3), Knots(2), Multiplicities(3, 3), Multiplicities(2, 2), 2, 1),
        new Geom_BSplineSurface(Net(4, 3), NetWeights(4, 3), Knots(5), Knots(3), Multiplicities(5, 1),
                                Multiplicities(3, 2), 2, 1, Standard_True),
    };
    surfaces.push_back(new Geom_RectangularTrimmedSurface(surfaces[1], 0.5, 1.5, 0.0, 1.0));
    surfaces.push_back(new Geom_OffsetSurface(surfaces[4], 0.25));
    surfaces.push_back(
        new Geom_RectangularTrimmedSurface(new Geom_OffsetSurface(surfaces[9], 0.25), 0.5, 1.5, 0.25, 0.75));
    return surfaces;
}

TopLoc_Location Place(double x)
{
    gp_Trsf move;
    move.SetTranslation(gp_Vec(x, 0, 0));
    return {move};
}

TopoDS_Edge EdgeOn(handle<Geom2d_Curve> const& curve, handle<Geom_Surface> const& surface)
{
    TopoDS_Edge edge;
    BRep_Builder builder;
    builder.MakeEdge(edge);
    builder.UpdateEdge(edge, curve, surface, TopLoc_Location(), 1e-7);
    builder.Range(edge, surface, TopLoc_Location(), 0.5, 1.5);
    return edge;
}

handle<Poly_Triangulation> Triangles(bool hasUV, bool hasNormals)
{
    handle<Poly_Triangulation> const triangles = new Poly_Triangulation(4, 2, hasUV, hasNormals);
    for (int i = 1; i <= 4; ++i)
    {
        triangles->SetNode(i, gp_Pnt(i % 2, i > 2 ? 1 : 0, 0));
        if (hasUV)
            triangles->SetUVNode(i, gp_Pnt2d(i % 2, i > 2 ? 1 : 0));
        if (hasNormals)
            triangles->SetNormal(i, gp_Vec3f(0, 0, 1));
    }
    triangles->SetTriangle(1, Poly_Triangle(1, 2, 3));
    triangles->SetTriangle(2, Poly_Triangle(2, 3, 4));
    return triangles;
}

handle<Poly_PolygonOnTriangulation> Border(bool hasParameters)
{
    handle<Poly_PolygonOnTriangulation> const border = new Poly_PolygonOnTriangulation(2, hasParameters);
    border->SetNode(1, 2);
    border->SetNode(2, 4);
    if (hasParameters)
    {
        border->SetParameter(1, 0.0);
        border->SetParameter(2, 1.0);
    }
    return border;
}

// A face of triangles alone, and one with a surface; an edge that has everything but a curve in space.
TopoDS_Shape Meshes()
{
    BRep_Builder builder;
    TopoDS_Face bare;
    builder.MakeFace(bare, Triangles(false, true));
    TopoDS_Face plane;
    builder.MakeFace(plane, new Geom_Plane(gp_Ax3()), 1e-7);
    handle<Poly_Triangulation> const triangles = Triangles(true, false);
    builder.UpdateFace(plane, triangles);
    TopoDS_Edge edge;
    builder.MakeEdge(edge);
    builder.UpdateEdge(edge, new Poly_Polygon3D(Poles<TColgp_Array1OfPnt>(3)));
    builder.UpdateEdge(edge, Border(true), triangles);
    TopoDS_Edge seam;
    builder.MakeEdge(seam);
    builder.UpdateEdge(seam, new Poly_Polygon3D(Poles<TColgp_Array1OfPnt>(3), Weights(3)), Place(1));
    builder.UpdateEdge(seam, Border(false), Border(true), triangles);
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (TopoDS_Shape const& shape : {TopoDS_Shape(bare), TopoDS_Shape(plane), TopoDS_Shape(edge), TopoDS_Shape(seam)})
        builder.Add(all, shape);
    return all;
}

// An edge on both sides of a seam and between two surfaces.
TopoDS_Shape Seam()
{
    BRep_Builder builder;
    handle<Geom_Surface> const cylinder = new Geom_CylindricalSurface(gp_Ax3(), 2);
    handle<Geom_Surface> const plane = new Geom_Plane(gp_Ax3());
    TopoDS_Edge edge = BRepBuilderAPI_MakeEdge(gp_Pnt(2, 0, 0), gp_Pnt(2, 0, 1)).Edge();
    builder.UpdateEdge(edge, new Geom2d_Line(gp_Pnt2d(0, 0), gp_Dir2d(0, 1)),
                       new Geom2d_Line(gp_Pnt2d(2 * M_PI, 0), gp_Dir2d(0, 1)), cylinder, TopLoc_Location(), 1e-7);
    builder.Continuity(edge, cylinder, plane, TopLoc_Location(), Place(1), GeomAbs_C1);
    return edge;
}

TopoDS_Shape PointsOnThings()
{
    BRep_Builder builder;
    TopoDS_Vertex vertex;
    builder.MakeVertex(vertex, gp_Pnt(1, 2, 3), 1e-7);
    handle<Geom_Surface> const plane = new Geom_Plane(gp_Ax3());
    BRep_ListOfPointRepresentation& points = handle<BRep_TVertex>::DownCast(vertex.TShape())->ChangePoints();
    points.Append(new BRep_PointOnCurve(0.5, Curves()[0], Place(1)));
    points.Append(new BRep_PointOnCurveOnSurface(0.5, PlaneCurves()[0], plane, TopLoc_Location()));
    points.Append(new BRep_PointOnSurface(0.5, 0.5, plane, TopLoc_Location()));
    return vertex;
}

TopoDS_Shape Placed()
{
    BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    TopoDS_Vertex vertex;
    builder.MakeVertex(vertex, gp_Pnt(1, 2, 3), 1e-7);
    TopLoc_Location const there = Place(1);
    TopLoc_Location const away = Place(10);
    for (TopLoc_Location const& place : {there, there.Powered(3), there * away, away.Inverted() * there})
        builder.Add(all, vertex.Located(place));
    TopoDS_Compound outer;
    builder.MakeCompound(outer);
    builder.Add(outer, all.Located(away));
    builder.Add(outer, all.Reversed());
    return outer;
}

TopoDS_Shape EveryKindOfShape()
{
    BRep_Builder builder;
    TopoDS_Vertex vertex;
    builder.MakeVertex(vertex, gp_Pnt(0, 0, 0), 1e-7);
    TopoDS_Edge edge;
    builder.MakeEdge(edge);
    builder.Degenerated(edge, Standard_True);
    builder.Add(edge, vertex);
    builder.Add(edge, vertex.Oriented(TopAbs_INTERNAL));
    TopoDS_Wire wire;
    builder.MakeWire(wire);
    builder.Add(wire, edge);
    TopoDS_Face face;
    builder.MakeFace(face);
    builder.Add(face, wire);
    TopoDS_Shell shell;
    builder.MakeShell(shell);
    builder.Add(shell, face.Oriented(TopAbs_EXTERNAL));
    TopoDS_Solid solid;
    builder.MakeSolid(solid);
    builder.Add(solid, shell);
    TopoDS_CompSolid compSolid;
    builder.MakeCompSolid(compSolid);
    builder.Add(compSolid, solid);
    TopoDS_Compound all;
    builder.MakeCompound(all);
    builder.Add(all, compSolid);
    return all;
}

}  // namespace

std::vector<NamedShape> RareShapes()
{
    std::vector<NamedShape> shapes;
    auto const add = [&](std::string const& name, TopoDS_Shape const& shape) {
        shapes.push_back({name, std::make_shared<TopoDS_Shape>(shape)});
    };
    int number = 0;
    for (handle<Geom_Curve> const& curve : Curves())
        add("curve " + std::to_string(++number), BRepBuilderAPI_MakeEdge(curve, 0.6, 0.9).Edge());
    number = 0;
    for (handle<Geom2d_Curve> const& curve : PlaneCurves())
        add("curve on a plane " + std::to_string(++number), EdgeOn(curve, new Geom_Plane(gp_Ax3())));
    number = 0;
    for (handle<Geom_Surface> const& surface : Surfaces())
    {
        TopoDS_Face face;
        BRep_Builder().MakeFace(face, surface, 1e-7);
        BRep_Builder().NaturalRestriction(face, ++number % 2 == 0);
        add("surface " + std::to_string(number), face);
    }
    add("meshes", Meshes());
    add("seam", Seam());
    add("points", PointsOnThings());
    add("placed", Placed());
    add("kinds", EveryKindOfShape());
    return shapes;
}

}  // namespace KVR::Test
