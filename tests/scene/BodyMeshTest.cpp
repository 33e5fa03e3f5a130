// Bodies as flat arrays.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Solid.hxx>
#include <cmath>
#include <limits>
#include <set>

#include "scene/SceneMesh.h"
#include "scene/SceneMeshes.h"
#include "tests/framework/gmk_interface/PlainBrep.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::IsEmpty;

double AreaOf(SceneMesh const& mesh, std::uint32_t face)
{
    double area = 0.0;
    for (std::size_t i = 0; i < mesh.TriangleCount(); ++i)
    {
        if (mesh.faceOfTriangle[i] != face)
            continue;
        double const* const a = &mesh.positions[3 * mesh.indices[3 * i]];
        double const* const b = &mesh.positions[3 * mesh.indices[3 * i + 1]];
        double const* const c = &mesh.positions[3 * mesh.indices[3 * i + 2]];
        double const u[] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        double const v[] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        area += 0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
    }
    return area;
}

}  // namespace

TEST(SceneMeshOfBody, ABoxIsTwelveTrianglesOfSixFaces)
{
    PlainBrep brep(new BODY(BoxShape(1, 2, 3)));
    SceneMesh const mesh = SceneMesh::Of(brep, 1e-3);
    EXPECT_EQ(mesh.TriangleCount(), 12U);
    EXPECT_EQ(mesh.VertexCount(), 24U);
    EXPECT_EQ(mesh.normals.size(), mesh.positions.size());
    ASSERT_EQ(mesh.faces.size(), 6U);
    std::multiset<double> areas;
    for (std::uint32_t face = 0; face < 6; ++face)
        areas.insert(AreaOf(mesh, face));
    EXPECT_THAT(areas, testing::ElementsAre(2, 2, 3, 3, 6, 6));
    EXPECT_EQ(mesh.edges.size(), 12U);
    EXPECT_EQ(mesh.edgePoints.size(), 72U);
    EXPECT_EQ(mesh.facesWithoutTriangles, 0U);
}

TEST(SceneMeshOfBody, FacesAndEdgesHaveTheirIdsAndFacesTheirStyles)
{
    auto* const body = new BODY(BoxShape(1, 2, 3));
    body->AddFaceDataId(2, "face3");
    body->AddFaceDataId(2, "again");
    body->AddFaceDataId(4, "face5");
    body->AddEdgeDataId(7, "edge8");
    PlainBrep brep(body);
    EditableDataIdToPersistentIdMap ids;
    ids.Add("again", "p3");
    ids.Add("edge8", "p8");
    brep.AppendPersistentIDsToMap(ids);
    IdSet red;
    red.AddWithoutUniquenessCheck("red");
    brep.StylesMap()->SetStyles("face5", red);
    SceneMesh const mesh = SceneMesh::Of(brep, 1e-3);
    EXPECT_EQ(mesh.faces[2].dataId, "face3");
    EXPECT_EQ(mesh.faces[2].persistentId, "p3");
    EXPECT_EQ(mesh.faces[4].dataId, "face5");
    EXPECT_EQ(mesh.faces[4].persistentId, "");
    EXPECT_EQ(mesh.faces[0].dataId, "");
    EXPECT_EQ(mesh.edges[7].dataId, "edge8");
    EXPECT_EQ(mesh.edges[7].persistentId, "p8");
    ASSERT_EQ(mesh.runs.size(), 2U);
    EXPECT_EQ(mesh.runs[0].style, "");
    EXPECT_EQ(mesh.runs[1].style, "red");
    EXPECT_EQ(mesh.runs[1].triangleCount, 2U);
    for (std::size_t i = mesh.runs[1].firstTriangle; i < mesh.TriangleCount(); ++i)
        EXPECT_EQ(mesh.faceOfTriangle[i], 4U);
}

TEST(SceneMeshOfBody, AFinerDeflectionHasMoreTriangles)
{
    PlainBrep coarse(new BODY(BRepPrimAPI_MakeCylinder(1.0, 1.0).Solid()));
    PlainBrep fine(new BODY(BRepPrimAPI_MakeCylinder(1.0, 1.0).Solid()));
    EXPECT_LT(SceneMesh::Of(coarse, 1e-2).TriangleCount(), SceneMesh::Of(fine, 1e-4).TriangleCount());
}

TEST(SceneMeshOfBody, NoDeflectionIsTooFineAndNoBodyTooSmall)
{
    for (double const deflection : {0.0, -1.0, 1e-300, std::numeric_limits<double>::quiet_NaN()})
    {
        PlainBrep brep(new BODY(BoxShape(1, 2, 3)));
        EXPECT_EQ(SceneMesh::Of(brep, deflection).TriangleCount(), 12U) << deflection;
    }
    PlainBrep brep(new BODY(BoxShape(1e-5, 1e-5, 1e-5)));
    EXPECT_EQ(SceneMesh::Of(brep, 1e-3).TriangleCount(), 12U);
}

TEST(SceneMeshOfBody, AWireHasEdgesAlone)
{
    PlainBrep brep(new BODY(ArcEdge()));
    SceneMesh const mesh = SceneMesh::Of(brep, 1e-3);
    EXPECT_THAT(mesh.runs, IsEmpty());
    ASSERT_EQ(mesh.edges.size(), 1U);
    EXPECT_GT(mesh.edges[0].pointCount, 5U);
    EXPECT_NEAR(mesh.edgePoints[0], 2.0, 1e-12);
}

TEST(SceneMeshOfBody, WithoutABodyOrAShapeItIsEmpty)
{
    PlainBrep none;
    EXPECT_THAT(SceneMesh::Of(none, 1e-3).runs, IsEmpty());
    TopoDS_Compound compound;
    BRep_Builder().MakeCompound(compound);
    PlainBrep empty(new BODY(compound));
    SceneMesh const mesh = SceneMesh::Of(empty, 1e-3);
    EXPECT_THAT(mesh.runs, IsEmpty());
    EXPECT_THAT(mesh.edges, IsEmpty());
}

TEST(SceneMeshOfBody, AMeshTakesTheIdsOfItsBodyWhereTheNumbersFit)
{
    auto* const body = new BODY(BoxShape(1, 2, 3));
    body->AddFaceDataId(2, "face3");
    body->AddEdgeDataId(7, "edge8");
    PlainBrep brep(body);
    SceneMesh mesh;
    mesh.faces.resize(6);
    mesh.edges.resize(11);
    mesh.TakeIdsOf(brep);
    EXPECT_EQ(mesh.faces[2].dataId, "face3");
    EXPECT_EQ(mesh.edges[7].dataId, "");
    mesh.edges.resize(12);
    mesh.faces.assign(5, {});
    mesh.TakeIdsOf(brep);
    EXPECT_EQ(mesh.faces[2].dataId, "");
    EXPECT_EQ(mesh.edges[7].dataId, "edge8");
}

}  // namespace KVR::Test
