#include "tests/support/Shapes.h"

#include <gtest/gtest.h>
#include <BRepAdaptor_Curve.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepGProp.hxx>
#include <BRepOffsetAPI_MakePipe.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRep_Builder.hxx>
#include <Bnd_Box.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <GProp_GProps.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Trsf.hxx>

namespace KVR::Test
{

namespace
{

TopoDS_Shape FilletedBlock()
{
    TopoDS_Shape const box = BoxShape(10, 20, 30);
    BRepFilletAPI_MakeFillet fillet(box);
    for (TopExp_Explorer edge(box, TopAbs_EDGE); edge.More(); edge.Next())
        fillet.Add(1.5, TopoDS::Edge(edge.Current()));
    return fillet.Shape();
}

TopoDS_Wire BentWire()
{
    BRepBuilderAPI_MakeWire wire(BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(0, 0, 10)).Edge());
    gp_Pnt const middle(5 - 5 * std::cos(M_PI / 4), 0, 10 + 5 * std::sin(M_PI / 4));
    wire.Add(BRepBuilderAPI_MakeEdge(GC_MakeArcOfCircle(gp_Pnt(0, 0, 10), middle, gp_Pnt(5, 0, 15)).Value()).Edge());
    return wire.Wire();
}

TopoDS_Shape SweptPipe()
{
    gp_Circ const circle(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), 1.0);
    TopoDS_Wire const profile = BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(circle).Edge()).Wire();
    return BRepOffsetAPI_MakePipe(BentWire(), BRepBuilderAPI_MakeFace(profile).Face()).Shape();
}

TopoDS_Shape BoredCylinder()
{
    return BRepAlgoAPI_Cut(BRepPrimAPI_MakeCylinder(5, 20).Shape(), BRepPrimAPI_MakeCylinder(2, 20).Shape()).Shape();
}

TopoDS_Shape Sheet()
{
    return BRepBuilderAPI_MakeFace(gp_Pln(), 0, 4, 0, 7).Face();
}

TopoDS_Shape Moved(TopoDS_Shape const& shape, double x)
{
    gp_Trsf move;
    move.SetTranslation(gp_Vec(x, 0, 0));
    return shape.Moved(TopLoc_Location(move));
}

TopoDS_Shape Compound()
{
    TopoDS_Compound compound;
    BRep_Builder builder;
    builder.MakeCompound(compound);
    TopoDS_Shape const box = BoxShape(1, 2, 3);
    builder.Add(compound, box);
    builder.Add(compound, Moved(box, 10));
    builder.Add(compound, Moved(Sheet(), 20).Reversed());
    return compound;
}

// Of the edges, as a thousand chords each: Open CASCADE's own integration depends on the last digit of a knot.
double LengthOf(TopoDS_Shape const& shape)
{
    constexpr int kChords = 1000;
    double length = 0.0;
    for (TopExp_Explorer edge(shape, TopAbs_EDGE); edge.More(); edge.Next())
    {
        BRepAdaptor_Curve const curve(TopoDS::Edge(edge.Current()));
        double const first = curve.FirstParameter();
        double const step = (curve.LastParameter() - first) / kChords;
        for (int i = 0; i < kChords; ++i)
            length += curve.Value(first + i * step).Distance(curve.Value(first + (i + 1) * step));
    }
    return length;
}

int CountOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape shapes;
    TopExp::MapShapes(shape, kind, shapes);
    return shapes.Extent();
}

}  // namespace

TopoDS_Shape BoxShape(double x, double y, double z)
{
    return BRepPrimAPI_MakeBox(x, y, z).Shape();
}

TopoDS_Shape ArcEdge()
{
    double const diagonal = std::sqrt(2.0);
    return BRepBuilderAPI_MakeEdge(
               GC_MakeArcOfCircle(gp_Pnt(2, 0, 0), gp_Pnt(diagonal, diagonal, 0), gp_Pnt(0, 2, 0)).Value())
        .Edge();
}

std::vector<NamedShape> AllShapes()
{
    std::vector<NamedShape> shapes;
    auto const add = [&](char const* name, TopoDS_Shape const& shape) {
        shapes.push_back({name, std::make_shared<TopoDS_Shape>(shape)});
    };
    add("box", BoxShape(1, 2, 3));
    add("filleted block", FilletedBlock());
    add("swept pipe", SweptPipe());
    add("bored cylinder", BoredCylinder());
    add("sheet", Sheet());
    add("wire", BentWire());
    add("compound", Compound());
    add("B-splines", BRepBuilderAPI_NurbsConvert(BRepPrimAPI_MakeTorus(10, 3).Shape()).Shape());
    return shapes;
}

ShapeFacts FactsOf(TopoDS_Shape const& shape)
{
    ShapeFacts facts;
    facts.solids = CountOf(shape, TopAbs_SOLID);
    facts.faces = CountOf(shape, TopAbs_FACE);
    facts.edges = CountOf(shape, TopAbs_EDGE);
    facts.vertices = CountOf(shape, TopAbs_VERTEX);
    GProp_GProps volume;
    BRepGProp::VolumeProperties(shape, volume);
    facts.volume = volume.Mass();
    GProp_GProps area;
    BRepGProp::SurfaceProperties(shape, area);
    facts.area = area.Mass();
    facts.length = LengthOf(shape);
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, Standard_False, Standard_False);
    box.Get(facts.box[0], facts.box[1], facts.box[2], facts.box[3], facts.box[4], facts.box[5]);
    return facts;
}

void ExpectEqualFacts(ShapeFacts const& found, ShapeFacts const& expected, std::string const& name)
{
    EXPECT_EQ(found.solids, expected.solids) << name;
    EXPECT_EQ(found.faces, expected.faces) << name;
    EXPECT_EQ(found.edges, expected.edges) << name;
    EXPECT_EQ(found.vertices, expected.vertices) << name;
    auto const expectNear = [&](double a, double b, char const* what)
    { EXPECT_NEAR(a, b, 1e-9 * std::max(1.0, std::abs(b))) << name << ", " << what; };
    expectNear(found.volume, expected.volume, "volume");
    expectNear(found.area, expected.area, "area");
    expectNear(found.length, expected.length, "length");
    for (int i = 0; i < 6; ++i)
        expectNear(found.box[i], expected.box[i], "box");
}

}  // namespace KVR::Test
