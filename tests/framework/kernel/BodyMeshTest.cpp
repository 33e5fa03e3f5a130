#include "framework/kernel/tessellation/BodyMesh.h"

#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRep_Builder.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Pln.hxx>

namespace KVR::Test
{

namespace
{

// A face with one triangle, and an edge along two of its three nodes.
TopoDS_Face FaceWithEdgeOf(int first, int second)
{
    TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(), 0.0, 1.0, 0.0, 1.0).Face();
    Handle(Poly_Triangulation) const triangulation = new Poly_Triangulation(3, 1, false);
    triangulation->SetNode(1, gp_Pnt(0.0, 0.0, 0.0));
    triangulation->SetNode(2, gp_Pnt(1.0, 0.0, 0.0));
    triangulation->SetNode(3, gp_Pnt(0.0, 1.0, 0.0));
    triangulation->SetTriangle(1, Poly_Triangle(1, 2, 3));
    BRep_Builder builder;
    builder.UpdateFace(face, triangulation);
    TColStd_Array1OfInteger nodes(1, 2);
    nodes(1) = first;
    nodes(2) = second;
    TopExp_Explorer const edge(face, TopAbs_EDGE);
    builder.UpdateEdge(TopoDS::Edge(edge.Current()), new Poly_PolygonOnTriangulation(nodes), triangulation);
    return face;
}

}  // namespace

TEST(BodyMesh, AnEdgeHasTheVerticesOfItsNodes)
{
    BodyMesh const mesh(FaceWithEdgeOf(2, 3));
    EXPECT_EQ(mesh.TriangleCount(), 1u);
    EXPECT_EQ(mesh.Vertices().size(), 9u);
    ASSERT_EQ(mesh.Edges().size(), 1u);
    EXPECT_EQ(mesh.Edges()[0].size(), 2u);
}

TEST(BodyMesh, AnEdgeWithNodesThatThereAreNotHasNoVertices)
{
    for (auto const& [first, second] : {std::pair(0, 2), std::pair(1, 4), std::pair(-5, 1), std::pair(1, 1 << 30)})
    {
        BodyMesh const mesh(FaceWithEdgeOf(first, second));
        EXPECT_EQ(mesh.TriangleCount(), 1u);
        EXPECT_EQ(mesh.Vertices().size(), 9u);
        EXPECT_TRUE(mesh.Edges().empty());
    }
}

}  // namespace KVR::Test
