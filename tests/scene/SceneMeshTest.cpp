#include "scene/SceneMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "authoring/MeshStoreWriter.h"
#include "scene/SceneMeshes.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

using Indices = std::vector<std::uint64_t>;
using Numbers = std::vector<double>;

struct TestPolygon
{
    Indices vertices;
    std::optional<std::uint64_t> material;
    Indices normals;
    std::vector<Authoring::TextureReference> textures;
};

struct TextureSet
{
    std::uint32_t dimension;
    Numbers coordinates;
};

struct TestMesh
{
    Numbers vertices;
    Numbers normals;
    std::vector<TextureSet> sets;
    std::vector<TestPolygon> polygons;
    std::vector<std::string> materials;
    std::vector<Indices> faces;
    std::vector<Indices> edges;
    std::vector<bool> visible;
    char const* type = "";
};

// A scene with the mesh "m".
struct MeshScene
{
    explicit MeshScene(TestMesh const& content)
        : scene(std::string("<Scene>") + kMeshInfo + kSegmentInfo + "<IPolygonMesh ID=\"m\" " + content.type +
                "/></Scene>")
    {
        Authoring::MeshStoreWriter writer(Path("s.mesh"), Authoring::MeshStoreLayout::kMeshInfo);
        for (std::string const& id : content.materials)
            writer.AddMaterial(UTF8String(id));
        Authoring::MeshHead head;
        head.vertexCount = content.vertices.size() / 3;
        head.normalCount = content.normals.size() / 3;
        head.polygonCount = content.polygons.size();
        head.textureSetCount = content.sets.size();
        writer.BeginMesh("m", head);
        writer.Vertices(content.vertices);
        writer.Normals(content.normals);
        for (TextureSet const& set : content.sets)
            writer.TextureSet(set.dimension, set.coordinates);
        for (TestPolygon const& polygon : content.polygons)
            writer.Polygon({polygon.vertices, polygon.material, polygon.normals, polygon.textures});
        writer.EndMesh();
        writer.Finish();
        Authoring::SegmentStoreWriter segments(Path("s.seg"));
        segments.Mesh("m", content.faces, content.edges, content.visible);
        segments.Finish();
        scene.Begin();
    }
    UTF16String Path(char const* name) { return Wide((scene.Folder() + "/" + name).c_str()); }
    IPolygonMesh& Mesh() { return scene.Get<IPolygonMesh>("m"); }

    TestScene scene;
};

SceneMesh MeshOf(TestMesh const& content)
{
    return SceneMesh::Of(MeshScene(content).Mesh());
}

// The area of all triangles in the plane z = 0, those that run clockwise negative.
double AreaOf(SceneMesh const& mesh)
{
    double area = 0.0;
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        double const* const a = &mesh.positions[3 * mesh.indices[i]];
        double const* const b = &mesh.positions[3 * mesh.indices[i + 1]];
        double const* const c = &mesh.positions[3 * mesh.indices[i + 2]];
        double const twice = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
        EXPECT_GE(twice, 0.0);
        area += 0.5 * twice;
    }
    return area;
}

Numbers const kSquare = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};

TestPolygon Polygon(Indices vertices, std::optional<std::uint64_t> material = std::nullopt)
{
    return {std::move(vertices), material, {}, {}};
}

}  // namespace

TEST(SceneMesh, ATriangleIsThreeVerticesAndARunWithoutStyle)
{
    SceneMesh const mesh = MeshOf({kSquare, {}, {}, {Polygon({0, 1, 2})}, {}, {}, {}, {}});
    EXPECT_THAT(mesh.positions, ElementsAre(0, 0, 0, 1, 0, 0, 1, 1, 0));
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2));
    EXPECT_THAT(mesh.normals, IsEmpty());
    EXPECT_THAT(mesh.texture, IsEmpty());
    EXPECT_THAT(mesh.faces, IsEmpty());
    EXPECT_THAT(mesh.faceOfTriangle, IsEmpty());
    ASSERT_EQ(mesh.runs.size(), 1U);
    EXPECT_EQ(mesh.runs[0].style, "");
    EXPECT_FALSE(mesh.runs[0].hasNormals);
    EXPECT_FALSE(mesh.runs[0].hasTexture);
    EXPECT_EQ(mesh.runs[0].vertexCount, 3U);
    EXPECT_EQ(mesh.runs[0].triangleCount, 1U);
    EXPECT_EQ(mesh.brokenPolygons, 0U);
}

TEST(SceneMesh, PositionsAreExact)
{
    double const fine = 1.0 + 1e-15;
    SceneMesh const mesh = MeshOf({{0, 0, 0, fine, 0, 0, 0, fine, 0}, {}, {}, {Polygon({0, 1, 2})}, {}, {}, {}, {}});
    EXPECT_EQ(mesh.positions[3], fine);
}

TEST(SceneMesh, APolygonWithDentsIsDividedInside)
{
    // A comb: its fan would leave it.
    TestMesh comb;
    Indices corners;
    for (int tooth = 0; tooth < 10; ++tooth)
    {
        comb.vertices.insert(comb.vertices.end(), {2.0 * tooth, 0, 0, 2.0 * tooth + 1.5, 10, 0});
        corners.push_back(corners.size());
        corners.push_back(corners.size());
    }
    comb.vertices.insert(comb.vertices.end(), {20, -1, 0, 0, -1, 0});
    corners.push_back(20);
    corners.push_back(21);
    // From left to right above and back below is clockwise.
    std::reverse(corners.begin(), corners.end());
    comb.polygons = {Polygon(corners)};
    double area = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        double const* const a = &comb.vertices[3 * corners[i]];
        double const* const b = &comb.vertices[3 * corners[(i + 1) % corners.size()]];
        area += 0.5 * (a[0] * b[1] - a[1] * b[0]);
    }
    SceneMesh const mesh = MeshOf(comb);
    EXPECT_EQ(mesh.TriangleCount(), corners.size() - 2);
    EXPECT_GT(area, 0.0);
    EXPECT_NEAR(AreaOf(mesh), area, 1e-9);
}

TEST(SceneMesh, StripsTurnEveryOtherTriangleAndFansKeepTheFirstCorner)
{
    TestMesh strip{{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {}, {}, {Polygon({0, 1, 2, 3})}, {}, {}, {}, {}};
    strip.type = R"(Type="kPolygonMeshType_Strip")";
    SceneMesh const fromStrip = MeshOf(strip);
    EXPECT_THAT(fromStrip.indices, ElementsAre(0, 1, 2, 2, 1, 3));
    EXPECT_NEAR(AreaOf(fromStrip), 1.0, 1e-12);
    TestMesh fan{kSquare, {}, {}, {Polygon({0, 1, 2, 3})}, {}, {}, {}, {}};
    fan.type = R"(Type="kPolygonMeshType_Fan")";
    EXPECT_THAT(MeshOf(fan).indices, ElementsAre(0, 1, 2, 0, 2, 3));
}

TEST(SceneMesh, PolygonsThatMakeNoSenseAreCountedAndLeaveNothingBehind)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    TestMesh content{kSquare, {0, 0, 1}, {}, {}, {"s"}, {}, {}, {}};
    content.vertices.insert(content.vertices.end(), {nan, 0, 0, 1e300, 0, 0});
    content.polygons = {Polygon({0, 1, 6}),       Polygon({0, 1, 0xFFFFFFFF}), Polygon({0, 1}, 0),
                        Polygon({0, 1, 4}, 0),    Polygon({0, 5, 1}),          {{0, 1, 2}, 0, {0, 0, 7}, {}},
                        Polygon({0, 1, 2, 0, 99})};
    SceneMesh const mesh = MeshOf(content);
    EXPECT_EQ(mesh.brokenPolygons, content.polygons.size());
    EXPECT_THAT(mesh.runs, IsEmpty());
    EXPECT_THAT(mesh.positions, IsEmpty());
    content.polygons.push_back(Polygon({0, 1, 2}));
    EXPECT_EQ(MeshOf(content).TriangleCount(), 1U);
}

TEST(SceneMesh, EachStyleIsARunInTheOrderInWhichItComes)
{
    TestMesh content{kSquare, {}, {}, {}, {"red", "blue"}, {}, {}, {}};
    content.polygons = {Polygon({0, 1, 2}, 1), Polygon({0, 2, 3}), Polygon({1, 2, 3}, 0), Polygon({0, 1, 3}, 1),
                        Polygon({0, 1, 2}, 99)};
    SceneMesh const mesh = MeshOf(content);
    ASSERT_EQ(mesh.runs.size(), 3U);
    EXPECT_EQ(mesh.runs[0].style, "blue");
    EXPECT_EQ(mesh.runs[0].firstTriangle, 0U);
    EXPECT_EQ(mesh.runs[0].triangleCount, 2U);
    EXPECT_EQ(mesh.runs[0].vertexCount, 4U);
    // Without a material, and with one that is not in the table.
    EXPECT_EQ(mesh.runs[1].style, "");
    EXPECT_EQ(mesh.runs[1].firstTriangle, 2U);
    EXPECT_EQ(mesh.runs[1].triangleCount, 2U);
    EXPECT_EQ(mesh.runs[1].firstVertex, 4U);
    EXPECT_EQ(mesh.runs[2].style, "red");
    EXPECT_EQ(mesh.runs[2].firstVertex, 8U);
    EXPECT_EQ(mesh.VertexCount(), 11U);
    for (SceneMesh::Run const& run : mesh.runs)
        for (std::size_t i = 3 * run.firstTriangle; i < 3 * (run.firstTriangle + run.triangleCount); ++i)
        {
            EXPECT_GE(mesh.indices[i], run.firstVertex);
            EXPECT_LT(mesh.indices[i], run.firstVertex + run.vertexCount);
        }
}

TEST(SceneMesh, CornersThatDifferInNormalOrTextureAreVerticesOfTheirOwn)
{
    TestMesh content{kSquare, {0, 0, 5, 0, 3, 0, 0, 0, 0}, {{2, {0.25, 0.25, 0.5, 1.0}}}, {}, {}, {}, {}, {}};
    content.polygons = {{{0, 1, 2}, {}, {0, 0, 0}, {{0, 0}, {0, 0}, {0, 0}}},
                        {{0, 2, 3}, {}, {0, 1, 2}, {{0, 0}, {0, 0}, {0, 1}}}};
    SceneMesh const mesh = MeshOf(content);
    ASSERT_EQ(mesh.runs.size(), 1U);
    EXPECT_TRUE(mesh.runs[0].hasNormals);
    EXPECT_TRUE(mesh.runs[0].hasTexture);
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 0, 3, 4));
    // One without a length points up.
    EXPECT_THAT(mesh.normals, ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 0, 1));
    EXPECT_THAT(mesh.texture, ElementsAre(0.25F, 0.75F, 0.25F, 0.75F, 0.25F, 0.75F, 0.25F, 0.75F, 0.5F, 0.0F));
}

TEST(SceneMesh, ACornerIsTheSameVertexAgainHoweverManyOthersOfItsPointCameMeanwhile)
{
    TestMesh content{kSquare, {0, 0, 1, 0, 1, 0}, {}, {}, {"red", "blue"}, {}, {}, {}};
    Indices const up{0, 0, 0};
    Indices const aside{1, 1, 1};
    content.polygons = {{{0, 1, 2}, 0, up, {}},    {{0, 2, 3}, 1, up, {}},    {{0, 1, 2}, 0, aside, {}},
                        {{0, 2, 3}, 1, aside, {}}, {{0, 1, 2}, 0, up, {}},    {{0, 2, 3}, 1, up, {}},
                        {{0, 1, 2}, 0, aside, {}}, {{0, 2, 3}, 1, aside, {}}, {{1, 2, 3}, 0, up, {}}};
    SceneMesh const mesh = MeshOf(content);
    ASSERT_EQ(mesh.runs.size(), 2U);
    EXPECT_EQ(mesh.runs[0].vertexCount, 7U);
    EXPECT_EQ(mesh.runs[1].vertexCount, 6U);
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 1, 2, 6,  //
                                          7, 8, 9, 10, 11, 12, 7, 8, 9, 10, 11, 12));
    EXPECT_THAT(Numbers(mesh.positions.begin() + 18, mesh.positions.begin() + 24), ElementsAre(0, 1, 0, 0, 0, 0));
}

TEST(SceneMesh, ARunWithoutNormalsHasZerosBesideOneThatHasThem)
{
    TestMesh content{kSquare, {0, 0, 1}, {}, {}, {}, {}, {}, {}};
    content.polygons = {Polygon({0, 1, 2}), {{0, 2, 3}, {}, {0, 0, 0}, {}}};
    SceneMesh const mesh = MeshOf(content);
    ASSERT_EQ(mesh.runs.size(), 2U);
    EXPECT_FALSE(mesh.runs[0].hasNormals);
    EXPECT_TRUE(mesh.runs[1].hasNormals);
    EXPECT_THAT(mesh.normals, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1));
}

TEST(SceneMesh, OfSeveralTextureSetsTheFirstOneCountsIfItIsFlat)
{
    TestMesh content{kSquare, {}, {{2, {0, 0, 1, 0, 1, 1}}, {2, {9, 9}}}, {}, {}, {}, {}, {}};
    content.polygons = {{{0, 1, 2}, {}, {}, {{0, 0}, {1, 0}, {0, 1}, {1, 0}, {0, 2}, {1, 0}}}};
    EXPECT_THAT(MeshOf(content).texture, ElementsAre(0, 1, 1, 1, 1, 0));
    // A polygon that uses the second one alone has none.
    content.polygons = {{{0, 1, 2}, {}, {}, {{1, 0}, {1, 0}, {1, 0}}}};
    EXPECT_THAT(MeshOf(content).texture, IsEmpty());
    content.sets = {{3, {0, 0, 0}}};
    content.polygons = {{{0, 1, 2}, {}, {}, {{0, 0}, {0, 0}, {0, 0}}}};
    EXPECT_THAT(MeshOf(content).texture, IsEmpty());
    EXPECT_EQ(MeshOf(content).TriangleCount(), 1U);
}

TEST(SceneMesh, SegmentsAreFacesAndWhatIsHiddenIsLeftOut)
{
    TestMesh content{
        kSquare, {}, {}, {}, {}, {{0, 1}, {2, 99}, {3, 0}}, {{0, 1, 2}, {3}, {0, 77}}, {true, false, true}};
    content.polygons = {Polygon({0, 1, 2}), Polygon({0, 2, 3}), Polygon({1, 2, 3}), Polygon({0, 1, 3}),
                        Polygon({0, 1, 2, 3})};
    SceneMesh const mesh = MeshOf(content);
    ASSERT_EQ(mesh.faces.size(), 3U);
    EXPECT_TRUE(mesh.faces[0].isVisible);
    EXPECT_FALSE(mesh.faces[1].isVisible);
    EXPECT_EQ(mesh.hiddenPolygons, 1U);
    EXPECT_THAT(mesh.faceOfTriangle, ElementsAre(0, 0, 2, SceneMesh::kNoFace, SceneMesh::kNoFace));
    // A segment of one point, or one that is not there, is no edge.
    ASSERT_EQ(mesh.edges.size(), 1U);
    EXPECT_EQ(mesh.edges[0].pointCount, 3U);
    EXPECT_THAT(mesh.edgePoints, ElementsAre(0, 0, 0, 1, 0, 0, 1, 1, 0));
}

TEST(SceneMesh, AMeshWithoutAnythingIsEmpty)
{
    SceneMesh const mesh = MeshOf({});
    EXPECT_THAT(mesh.runs, IsEmpty());
    EXPECT_EQ(mesh.VertexCount(), 0U);
    EXPECT_EQ(mesh.TriangleCount(), 0U);
    EXPECT_EQ(mesh.brokenPolygons, 0U);
}

TEST(SceneMeshes, ComputeEachMeshOnce)
{
    MeshScene test({kSquare, {}, {}, {Polygon({0, 1, 2})}, {}, {}, {}, {}});
    SceneMeshes meshes;
    SceneMesh const& first = meshes.Of(test.Mesh());
    EXPECT_EQ(&meshes.Of(test.Mesh()), &first);
    EXPECT_EQ(first.TriangleCount(), 1U);
    meshes.Release(test.Mesh());
    EXPECT_EQ(meshes.Of(test.Mesh()).TriangleCount(), 1U);
}

}  // namespace KVR::Test
