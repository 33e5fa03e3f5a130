// The triangles of shapes, and the points along their edges.

#include "framework/kernel/tessellation/BodyMesh.h"

#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <IMeshTools_Parameters.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Ax2.hxx>
#include <gp_Pln.hxx>
#include <gp_Pnt2d.hxx>
#include <gp_Trsf.hxx>
#include <set>

#include "framework/kernel/tessellation/ShapeMesher.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

constexpr double kPi = 3.14159265358979323846;

TopoDS_Shape Meshed(TopoDS_Shape shape)
{
    IMeshTools_Parameters parameters;
    parameters.Deflection = 0.01;
    parameters.Angle = 0.2;
    MeshShape(shape, parameters);
    return shape;
}

gp_XYZ At(std::vector<double> const& list, std::uint64_t place)
{
    return {list[3 * place], list[3 * place + 1], list[3 * place + 2]};
}

double VolumeOf(BodyMesh const& mesh)
{
    double volume = 0.0;
    for (std::size_t i = 0; i < mesh.Corners().size(); i += 3)
        volume +=
            At(mesh.Vertices(), mesh.Corners()[i])
                .DotCross(At(mesh.Vertices(), mesh.Corners()[i + 1]), At(mesh.Vertices(), mesh.Corners()[i + 2])) /
            6.0;
    return volume;
}

// At poles and tips there are triangles of no area, two corners of which are one vertex.
bool HasArea(BodyMesh const& mesh, std::size_t corner)
{
    std::uint64_t const* const corners = &mesh.Corners()[corner - corner % 3];
    return corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0];
}

// Each side of a triangle is the side of another one, the other way round.
void ExpectClosed(BodyMesh const& mesh)
{
    std::set<std::pair<std::uint64_t, std::uint64_t>> sides;
    std::vector<std::uint64_t> const& corners = mesh.Corners();
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        if (!HasArea(mesh, i))
            continue;
        EXPECT_TRUE(sides.emplace(corners[i], corners[i % 3 == 2 ? i - 2 : i + 1]).second);
    }
    EXPECT_FALSE(sides.empty());
    for (auto const& [from, to] : sides)
        EXPECT_TRUE(sides.count({to, from})) << from << " to " << to;
}

void ExpectNormalsAlongTriangles(BodyMesh const& mesh)
{
    ASSERT_FALSE(mesh.IsEmpty());
    for (std::size_t i = 0; i < mesh.Corners().size(); ++i)
    {
        if (!HasArea(mesh, i))
            continue;
        std::size_t const first = i - i % 3;
        gp_XYZ const a = At(mesh.Vertices(), mesh.Corners()[first]);
        gp_XYZ const side = (At(mesh.Vertices(), mesh.Corners()[first + 1]) - a)
                                .Crossed(At(mesh.Vertices(), mesh.Corners()[first + 2]) - a);
        gp_XYZ const normal = At(mesh.Normals(), mesh.CornerNormals()[i]);
        EXPECT_NEAR(normal.Modulus(), 1.0, 1e-9);
        EXPECT_GT(normal.Dot(side.Normalized()), 0.5) << "corner " << i;
    }
}

TopoDS_Edge EdgeOf(TopoDS_Shape const& shape, bool isDegenerated)
{
    for (TopExp_Explorer at(shape, TopAbs_EDGE); at.More(); at.Next())
        if (BRep_Tool::Degenerated(TopoDS::Edge(at.Current())) == isDegenerated)
            return TopoDS::Edge(at.Current());
    return {};
}

// A square of two triangles, in a face that has no surface.
Handle(Poly_Triangulation) Square(bool hasTexture = false)
{
    Handle(Poly_Triangulation) square = new Poly_Triangulation(4, 2, hasTexture);
    gp_Pnt const nodes[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    for (int i = 0; i < 4; ++i)
    {
        square->SetNode(i + 1, nodes[i]);
        if (hasTexture)
            square->SetUVNode(i + 1, gp_Pnt2d(0.25 * i, 0.5));
    }
    square->SetTriangle(1, Poly_Triangle(1, 2, 3));
    square->SetTriangle(2, Poly_Triangle(1, 3, 4));
    return square;
}

TopoDS_Face FaceOf(Handle(Poly_Triangulation) const& triangulation)
{
    TopoDS_Face face;
    BRep_Builder().MakeFace(face, triangulation);
    return face;
}

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

TEST(BodyMesh, FacesOfABoxShareTheVerticesOfTheirEdges)
{
    TopoDS_Shape const box = Meshed(BoxShape(1, 2, 3));
    BodyMesh const mesh(box);
    EXPECT_EQ(mesh.Vertices().size(), 8U * 3U);
    EXPECT_EQ(mesh.TriangleCount(), 12U);
    EXPECT_EQ(mesh.Edges().size(), 12U);
    EXPECT_EQ(mesh.FacesWithoutTriangles(), 0U);
    ASSERT_EQ(mesh.Faces().size(), 6U);
    EXPECT_EQ(mesh.Faces()[1].firstTriangle, 2U);
    EXPECT_FALSE(mesh.Faces()[0].hasTexture) << "parameters of a surface are no texture";
    EXPECT_TRUE(mesh.Texture().empty());
    EXPECT_NEAR(VolumeOf(mesh), 6.0, 1e-9);
    ExpectClosed(mesh);
    ExpectNormalsAlongTriangles(mesh);
    TopoDS_Edge const edge = EdgeOf(box, false);
    ASSERT_TRUE(mesh.VerticesOf(edge));
    EXPECT_EQ(mesh.VerticesOf(edge)->size(), 2U);
    EXPECT_EQ(mesh.VerticesOf(edge.Reversed()), mesh.VerticesOf(edge));
    EXPECT_FALSE(mesh.VerticesOf(ArcEdge()));
}

TEST(BodyMesh, AMirroredBodyIsNotInsideOut)
{
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0)));
    for (TopoDS_Shape shape : {Meshed(BoxShape(1, 2, 3)), Meshed(BRepPrimAPI_MakeSphere(1.0).Shape())})
    {
        double const volume = VolumeOf(BodyMesh(shape));
        shape.Location(TopLoc_Location(mirror), false);
        BodyMesh const mesh(shape);
        EXPECT_NEAR(VolumeOf(mesh), volume, 1e-9);
        ExpectClosed(mesh);
        ExpectNormalsAlongTriangles(mesh);
    }
}

TEST(BodyMesh, TheTipOfAConeHasTheNormalsOfTheTrianglesAroundIt)
{
    BodyMesh const mesh(Meshed(BRepPrimAPI_MakeCone(1.0, 0.0, 0.5).Shape()));
    EXPECT_NEAR(VolumeOf(mesh), kPi / 6.0, 0.02);
    ExpectClosed(mesh);
    ExpectNormalsAlongTriangles(mesh);
}

TEST(BodyMesh, TheSeamOfASphereIsOneLineAndItsPolesHaveNone)
{
    TopoDS_Shape const sphere = Meshed(BRepPrimAPI_MakeSphere(1.0).Shape());
    BodyMesh const mesh(sphere);
    EXPECT_NEAR(VolumeOf(mesh), 4.0 / 3.0 * kPi, 0.1);
    ExpectClosed(mesh);
    ExpectNormalsAlongTriangles(mesh);
    EXPECT_EQ(mesh.Edges().size(), 1U);
    EXPECT_TRUE(mesh.VerticesOf(EdgeOf(sphere, false)));
    EXPECT_FALSE(mesh.VerticesOf(EdgeOf(sphere, true)));
}

TEST(BodyMesh, FacesWithoutTrianglesAreCounted)
{
    BodyMesh const bare(BoxShape(1, 2, 3));
    EXPECT_TRUE(bare.IsEmpty());
    EXPECT_EQ(bare.FacesWithoutTriangles(), 6U);
    EXPECT_TRUE(bare.Faces().empty());
    EXPECT_EQ(BodyMesh(FaceOf(new Poly_Triangulation())).FacesWithoutTriangles(), 1U);
}

TEST(BodyMesh, TrianglesWithoutASurfaceHaveTheirOwnNormals)
{
    TopoDS_Face const face = FaceOf(Square());
    BodyMesh const computed(face);
    ASSERT_EQ(computed.TriangleCount(), 2U);
    EXPECT_NEAR(At(computed.Normals(), 0).Z(), 1.0, 1e-12);
    ExpectNormalsAlongTriangles(computed);
    BodyMesh const reversed(face.Reversed());
    EXPECT_NEAR(At(reversed.Normals(), 0).Z(), -1.0, 1e-12);
    ExpectNormalsAlongTriangles(reversed);

    Handle(Poly_Triangulation) const slanted = Square();
    slanted->AddNormals();
    for (int i = 1; i <= 4; ++i)
        slanted->SetNormal(i, gp_Dir(0, 0.6, 0.8));
    BodyMesh const given(FaceOf(slanted));
    EXPECT_NEAR(At(given.Normals(), 3).Y(), 0.6, 1e-6);
    BodyMesh const givenReversed(FaceOf(slanted).Reversed());
    EXPECT_NEAR(At(givenReversed.Normals(), 3).Y(), -0.6, 1e-6);
}

TEST(BodyMesh, ATriangleWithoutAreaHasANormalAllTheSame)
{
    Handle(Poly_Triangulation) const line = Square();
    for (int i = 1; i <= 4; ++i)
        line->SetNode(i, gp_Pnt(i, 0, 0));
    BodyMesh const mesh(FaceOf(line));
    EXPECT_EQ(mesh.TriangleCount(), 2U);
    for (std::uint64_t i = 0; i < 4; ++i)
        EXPECT_EQ(At(mesh.Normals(), i).Z(), 1.0);
}

TEST(BodyMesh, TextureVerticesStandAtThePlacesOfTheNormals)
{
    TopoDS_Compound both;
    BRep_Builder builder;
    builder.MakeCompound(both);
    builder.Add(both, FaceOf(Square()));
    builder.Add(both, FaceOf(Square(true)));
    BodyMesh const mesh(both);
    ASSERT_EQ(mesh.Faces().size(), 2U);
    EXPECT_FALSE(mesh.Faces()[0].hasTexture);
    EXPECT_TRUE(mesh.Faces()[1].hasTexture);
    ASSERT_EQ(mesh.Texture().size(), 16U);
    EXPECT_EQ(mesh.Texture()[0], 0.0);
    EXPECT_EQ(mesh.Texture()[14], 0.75);
    EXPECT_EQ(mesh.Texture()[15], 0.5);
}

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
