#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <cmath>
#include <limits>

#include "authoring/KernelStoreWriter.h"
#include "tests/exchange/ExportScene.h"
#include "tests/exchange/GltfFile.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Point = GltfFile::Point;

// In millimetres and with the scene's axes.
Point InScene(Point const& point)
{
    return {1e3 * point[0], -1e3 * point[2], 1e3 * point[1]};
}

Point AreaVector(Point const& a, Point const& b, Point const& c)
{
    Point const u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    Point const v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {(u[1] * v[2] - u[2] * v[1]) / 2, (u[2] * v[0] - u[0] * v[2]) / 2, (u[0] * v[1] - u[1] * v[0]) / 2};
}

// Sums over triangles, in the scene's unit.
struct Measures
{
    explicit Measures(GltfFile const& file)
    {
        for (GltfFile::Shown const& entry : file.shown)
            for (std::size_t i = 0; i + 2 < entry.indices.size(); i += 3)
            {
                Point const a = InScene(entry.points.at(entry.indices[i]));
                Point const b = InScene(entry.points.at(entry.indices[i + 1]));
                Point const c = InScene(entry.points.at(entry.indices[i + 2]));
                Point const vector = AreaVector(a, b, c);
                ++triangles;
                area += std::hypot(vector[0], vector[1], vector[2]);
                areaUp += vector[2];
                volume += (a[0] * vector[0] + a[1] * vector[1] + a[2] * vector[2]) / 3;
            }
    }
    int triangles = 0;
    double area = 0.0;
    double areaUp = 0.0;
    double volume = 0.0;
};

struct MeshRun : ExportScene
{
    ToolRun run;

    GltfFile Read(std::string const& meshAttributes = {}, std::string const& partText = {})
    {
        std::string part = partText;
        if (part.empty())
            part = R"(<IPart ID="p" Label="Part"><ChildSet><IPolygonMesh ID="m" Label="Mesh" Visibility="1" )" +
                   meshAttributes + "/></ChildSet></IPart>";
        run = Export(UnderTop(Instance("i", "p"), "",
                              R"(<StyleSet><IRenderStyle ID="red" Label="Red"><DiffuseColor FractionRed="1"
FractionGreen="0" FractionBlue="0"/></IRenderStyle></StyleSet>)") +
                         part,
                     "out.glb");
        if (run.status != 0)
            throw std::runtime_error(run.error);
        return GltfFile(PathOf("out.glb"));
    }
};

}  // namespace

TEST(ExportMeshTest, APolygonThatIsNotConvexKeepsItsOutline)
{
    MeshRun scene;
    // An L, as one polygon.
    scene.Mesh("m", {0, 0, 0, 2, 0, 0, 2, 1, 0, 1, 1, 0, 1, 2, 0, 0, 2, 0}, {{3, 4, 5, 0, 1, 2}});
    Measures const measures(scene.Read());
    EXPECT_EQ(measures.triangles, 4);
    EXPECT_NEAR(measures.area, 3.0, 1e-6);
    EXPECT_NEAR(measures.areaUp, 3.0, 1e-6) << "each triangle turns as the polygon does";
}

TEST(ExportMeshTest, StripsAndFansAreCutAsTheyAreMeant)
{
    MeshRun strip;
    strip.Mesh("m", {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 2, 0}, {{0, 1, 2, 3, 4}});
    Measures const ofStrip(strip.Read(R"(Type="kPolygonMeshType_Strip")"));
    EXPECT_EQ(ofStrip.triangles, 3);
    EXPECT_NEAR(ofStrip.areaUp, 1.5, 1e-6);
    EXPECT_NEAR(ofStrip.area, 1.5, 1e-6);
    MeshRun fan;
    fan.Mesh("m", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {{0, 1, 2, 3}});
    Measures const ofFan(fan.Read(R"(Type="kPolygonMeshType_Fan")"));
    EXPECT_EQ(ofFan.triangles, 2);
    EXPECT_NEAR(ofFan.areaUp, 1.0, 1e-6);
}

TEST(ExportMeshTest, PolygonsWithoutSenseAreLeftOutAndCounted)
{
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    constexpr double kMuch = std::numeric_limits<double>::infinity();
    MeshRun scene;
    scene.Mesh("m", {0, 0, 0, 1, 0, 0, 0, 1, 0, kNone, 0, 0, 0, kMuch, 0, 1e300, 0, 0},
               {{0, 1, 2}, {0, 1, 6}, {0, 1, 0xFFFFFFFFFFFFFFFF}, {0, 1, 3}, {0, 1, 4}, {0, 1, 5}, {0, 1}});
    GltfFile const file = scene.Read();
    EXPECT_EQ(Measures(file).triangles, 1);
    EXPECT_THAT(scene.run.error, HasSubstr("6 polygons whose indices make no sense"));
}

TEST(ExportMeshTest, AVertexWithTwoNormalsIsTwoAndNormalsHaveLengthOne)
{
    MeshRun scene;
    Authoring::MeshHead head;
    head.vertexCount = 4;
    head.normalCount = 3;
    head.polygonCount = 2;
    scene.Store().BeginMesh(UTF8String("m"), head);
    scene.Store().Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
    scene.Store().Normals(std::vector<double>{0, 0, 5, 0, -2, 0, 0, 0, 0});
    std::vector<std::uint64_t> const corners[] = {{0, 1, 2}, {0, 3, 1}};
    std::vector<std::uint64_t> const normals[] = {{0, 0, 0}, {1, 1, 2}};
    for (std::size_t i = 0; i < 2; ++i)
    {
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners[i];
        polygon.normals = normals[i];
        scene.Store().Polygon(polygon);
    }
    scene.Store().EndMesh();
    GltfFile const file = scene.Read();
    ASSERT_EQ(file.shown.size(), 1U);
    EXPECT_EQ(file.shown[0].points.size(), 6U);
    for (std::vector<double> const& n : file.Numbers(file.shown[0].primitive["attributes"]["NORMAL"]))
        EXPECT_NEAR(std::hypot(n[0], n[1], n[2]), 1.0, 1e-6);
}

TEST(ExportMeshTest, EachStyleOfFacesIsAPrimitiveAndHiddenFacesAreNone)
{
    MeshRun scene;
    Authoring::MeshHead head;
    head.vertexCount = 3;
    head.polygonCount = 4;
    scene.Store().BeginMesh(UTF8String("m"), head);
    scene.Store().Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0});
    std::vector<std::uint64_t> const corners{0, 1, 2};
    for (int i = 0; i < 4; ++i)
    {
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        if (i % 2 == 1)
            polygon.material = scene.Store().AddMaterial(UTF8String("red"));
        scene.Store().Polygon(polygon);
    }
    scene.Store().EndMesh();
    Authoring::SegmentStoreWriter segments(scene.Folder().PathOf("s.seg"));
    segments.Mesh(UTF8String("m"), std::vector<std::vector<std::uint64_t>>{{0, 1}, {2}, {3}}, {}, {true, false, true});
    segments.Finish();
    GltfFile const file = scene.Read();
    std::vector<std::pair<std::string, std::size_t>> primitives;
    for (GltfFile::Shown const& entry : file.shown)
        primitives.emplace_back(entry.material["name"], entry.indices.size());
    EXPECT_THAT(primitives, UnorderedElementsAre(std::pair<std::string, std::size_t>("default", 3),
                                                 std::pair<std::string, std::size_t>("Red", 6)));
}

TEST(ExportMeshTest, ABodyWithoutAMeshIsMeshedAndItsFacesHaveTheirStyles)
{
    MeshRun scene;
    Authoring::KernelStoreWriter kernel(scene.Folder().PathOf("s.sab"), Authoring::KernelStoreForm::kBinary);
    kernel.Body(UTF8String("body"), BoxShape(10, 20, 30), {{0, UTF8String("face")}});
    kernel.Finish();
    GltfFile const file =
        scene.Read("", R"(<SatInfo Path="s.sab"/><IPart ID="p" Label="Part"><ChildSet><IBrep ID="body" Label="Body"
Type="kProducerGeometryType_BrepSolid" Visibility="1"><Face ID="face"><Styles><StyleRef ID="red"/></Styles></Face></IBrep></ChildSet></IPart>)");
    Measures const measures(file);
    EXPECT_EQ(measures.triangles, 12);
    EXPECT_NEAR(measures.volume, 6000.0, 1e-2);
    EXPECT_THAT(scene.run.error, IsEmpty());
    ASSERT_EQ(file.shown.size(), 2U);
    GltfFile::Shown const& red = file.shown[file.shown[0].material["name"] == "Red" ? 0 : 1];
    EXPECT_EQ(red.material["name"], "Red");
    EXPECT_EQ(red.indices.size(), 6U);
    EXPECT_TRUE(red.primitive["attributes"].contains("NORMAL"));
}

TEST(ExportMeshTest, ThousandsOfVerticesHaveWideIndicesAndTheRangeOfTheirNumbers)
{
    MeshRun scene;
    std::vector<double> vertices;
    std::vector<std::vector<std::uint64_t>> polygons;
    constexpr std::uint64_t kTriangles = 25000;
    for (std::uint64_t i = 0; i < kTriangles; ++i)
    {
        auto const x = static_cast<double>(i);
        vertices.insert(vertices.end(), {x, 0, 0, x + 0.5, 0, 0, x, 2, 0});
        polygons.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    scene.Mesh("m", vertices, polygons);
    GltfFile const file = scene.Read();
    Measures const measures(file);
    EXPECT_EQ(measures.triangles, 25000);
    EXPECT_NEAR(measures.area, 12500.0, 1.0);
    EXPECT_EQ(file.document["accessors"][1]["componentType"], 5125);
    EXPECT_EQ(file.document["accessors"][0]["max"], nlohmann::json({24999.5, 2.0, 0.0}));
    EXPECT_EQ(file.document["accessors"][0]["min"], nlohmann::json({0.0, 0.0, 0.0}));
}

}  // namespace KVR::Test
