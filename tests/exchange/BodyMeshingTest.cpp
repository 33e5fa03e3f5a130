#include "exchange/import/BodyMeshing.h"

#include <gtest/gtest.h>

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <vector>

namespace KVR::Test
{

namespace
{

// A document with a part for each shape, in their order.
struct Model
{
    explicit Model(std::vector<TopoDS_Shape> const& parts) : document(new TDocStd_Document("BinXCAF"))
    {
        XCAFDoc_ShapeTool::SetAutoNaming(false);
        auto const shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
        for (TopoDS_Shape const& part : parts)
            shapes->AddShape(part, false);
    }

    Handle(TDocStd_Document) document;
};

std::vector<TopoDS_Shape> Cylinders()
{
    std::vector<TopoDS_Shape> cylinders;
    for (int i = 1; i <= 12; ++i)
        cylinders.push_back(BRepPrimAPI_MakeCylinder(0.5 * i, 20.0).Solid());
    return cylinders;
}

// With a face of the box in it.
TopoDS_Compound SheetOf(TopoDS_Shape const& box)
{
    TopoDS_Compound sheet;
    BRep_Builder const builder;
    builder.MakeCompound(sheet);
    builder.Add(sheet, TopExp_Explorer(box, TopAbs_FACE).Current());
    return sheet;
}

// Of each face; -1 for one that has none.
std::vector<int> TrianglesOf(TopoDS_Shape const& shape)
{
    std::vector<int> counts;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
    {
        TopLoc_Location location;
        Handle(Poly_Triangulation) const triangles = BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
        counts.push_back(triangles.IsNull() ? -1 : triangles->NbTriangles());
    }
    return counts;
}

}  // namespace

TEST(BodyMeshing, MakesTheTrianglesOfOneThread)
{
    std::vector<TopoDS_Shape> const shapes = Cylinders();
    Model const model(shapes);
    ProductPlan const plan(model.document);
    BodyMeshing meshing(plan, MeshQuality(), {});
    ASSERT_GT(meshing.Deflection(), 0.0);
    EXPECT_FALSE(meshing.IsDone());
    meshing.Start();
    std::vector<TopoDS_Shape> const same = Cylinders();
    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        meshing.Wait(i);
        BRepMesh_IncrementalMesh const alone(same[i], meshing.Deflection(), false, MeshQuality().angle, false);
        EXPECT_EQ(TrianglesOf(shapes[i]), TrianglesOf(same[i])) << i;
    }
    EXPECT_TRUE(meshing.IsDone());
}

TEST(BodyMeshing, TrianglesStayUntilNoComponentNeedsThem)
{
    TopoDS_Shape const box = BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Solid();
    TopoDS_Shape const other = BRepPrimAPI_MakeBox(3.0, 2.0, 1.0).Solid();
    TopoDS_Shape const sheet = SheetOf(box);
    Model const model({box, other, sheet});
    ProductPlan const plan(model.document);
    BodyMeshing meshing(plan, MeshQuality(), {});
    meshing.Start();
    meshing.WaitForAll();
    meshing.Release(0, {box});
    meshing.Release(1, {other});
    EXPECT_EQ(TrianglesOf(box), std::vector<int>(6, 2));
    EXPECT_EQ(TrianglesOf(other), std::vector<int>(6, -1));
    meshing.Release(2, {});
    EXPECT_EQ(TrianglesOf(box), std::vector<int>(6, -1));
}

TEST(BodyMeshing, WithoutAMeasureNothingIsWaitedFor)
{
    Model const model({BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Solid()});
    ProductPlan const plan(model.document);
    BodyMeshing meshing(plan, MeshQuality{{0.0, true}, 0.5, false}, {});
    EXPECT_EQ(meshing.Deflection(), 0.0);
    meshing.Start();
    EXPECT_TRUE(meshing.IsDone());
    meshing.Wait(0);
    EXPECT_EQ(TrianglesOf(plan.components[0].shape), std::vector<int>(6, -1));
}

TEST(BodyMeshing, WhenAllIsDoneNothingIsToldAnyMore)
{
    // An assembly counts for nothing.
    Model const model(Cylinders());
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(model.document->Main());
    TDF_Label const assembly = shapes->NewShape();
    shapes->AddComponent(assembly, BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Solid());
    ProductPlan const plan(model.document);
    int told = 0;
    int toldAtTheEnd = 0;
    {
        BodyMeshing meshing(plan, MeshQuality(), [&](char const*, double) { ++told; });
        meshing.Start();
        meshing.WaitForAll();
        EXPECT_TRUE(meshing.IsDone());
        toldAtTheEnd = told;
    }
    EXPECT_GT(toldAtTheEnd, 2);
    EXPECT_EQ(told, toldAtTheEnd);
}

}  // namespace KVR::Test
