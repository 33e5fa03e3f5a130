#include "inspect/geometry/MeshFaults.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "inspect/geometry/OpenEdges.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using Indices = std::vector<std::uint64_t>;

struct Polygon
{
    Indices vertices;
    Indices normals;
    std::vector<Authoring::TextureReference> textures;
};

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// Five points and three normals: upwards, downwards, of no length.
struct MeshOfPolygons
{
    explicit MeshOfPolygons(std::vector<Polygon> const& polygons, char const* type = "", bool hasTextures = false)
        : scene(std::string("<Scene>") + kMeshInfo + kSegmentInfo + "<IPolygonMesh ID=\"m\" " + type + "/></Scene>")
    {
        Authoring::MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()),
                                          Authoring::MeshStoreLayout::kMeshInfo);
        Authoring::MeshHead head;
        head.vertexCount = 5;
        head.normalCount = 3;
        head.polygonCount = polygons.size();
        head.textureSetCount = hasTextures ? 1 : 0;
        writer.BeginMesh("m", head);
        writer.Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 2, 0, 0});
        writer.Normals(std::vector<double>{0, 0, 1, 0, 0, -1, 0, 0, 0});
        if (hasTextures)
            writer.TextureSet(2, std::vector<double>{0, 0, 1, 1});
        for (Polygon const& polygon : polygons)
            writer.Polygon({polygon.vertices, std::nullopt, polygon.normals, polygon.textures});
        writer.EndMesh();
        writer.Finish();
    }

    MeshFaults Faults()
    {
        scene.Begin();
        return MeshFaults::Of(scene.Get<IPolygonMesh>("m"));
    }

    TestScene scene;
};

void ExpectFault(MeshFaults::Fault const& fault, std::size_t count, std::size_t first)
{
    EXPECT_EQ(fault.count, count);
    if (fault.count > 0)
    {
        EXPECT_EQ(fault.first, first);
    }
}

std::size_t Sum(MeshFaults const& faults)
{
    return faults.numbers.count + faults.vertexIndices.count + faults.normalIndices.count +
           faults.textureIndices.count + faults.faceSegments.count + faults.edgeSegments.count +
           faults.tooFewCorners.count + faults.degenerate.count + faults.zeroNormals.count + faults.turnedNormals.count;
}

constexpr char kStrip[] = "Type=\"kPolygonMeshType_Strip\"";
constexpr char kFan[] = "Type=\"kPolygonMeshType_Fan\"";

}  // namespace

TEST(MeshFaults, AGoodMeshHasNone)
{
    EXPECT_EQ(Sum(MeshOfPolygons({{{0, 1, 2}, {0, 0, 0}, {}}, {{0, 1, 3, 2}, {}, {}}}).Faults()), 0U);
}

TEST(MeshFaults, ATriangleOnALineHasNoArea)
{
    MeshFaults const faults = MeshOfPolygons({{{0, 1, 2}, {}, {}}, {{0, 1, 4}, {}, {}}, {{0, 0, 1}, {}, {}}}).Faults();
    ExpectFault(faults.degenerate, 2, 1);
    EXPECT_EQ(Sum(faults), 2U);
}

TEST(MeshFaults, AnIndexBeyondTheVerticesOrNormals)
{
    MeshFaults const faults =
        MeshOfPolygons({{{0, 1, 2}, {}, {}}, {{0, 1, 5}, {}, {}}, {{0, 1, 2}, {0, 0, 3}, {}}}).Faults();
    ExpectFault(faults.vertexIndices, 1, 1);
    ExpectFault(faults.normalIndices, 1, 2);
    EXPECT_EQ(Sum(faults), 2U);
}

TEST(MeshFaults, AnIndexThatReads32BitsAsNegative)
{
    ExpectFault(MeshOfPolygons({{{0, 1, 0xFFFFFFFFU}, {}, {}}}).Faults().vertexIndices, 1, 0);
}

TEST(MeshFaults, ATextureVertexOrSetThatIsNotThere)
{
    MeshFaults const faults = MeshOfPolygons({{{0, 1, 2}, {}, {{0, 0}, {0, 1}, {0, 1}}},
                                              {{0, 1, 2}, {}, {{0, 0}, {0, 1}, {0, 2}}},
                                              {{0, 1, 2}, {}, {{1, 0}, {1, 1}, {1, 1}}}},
                                             "", true)
                                  .Faults();
    ExpectFault(faults.textureIndices, 2, 1);
    EXPECT_EQ(Sum(faults), 2U);
}

TEST(MeshFaults, APolygonOfTwoCorners)
{
    MeshFaults const faults = MeshOfPolygons({{{0, 1}, {}, {}}}).Faults();
    ExpectFault(faults.tooFewCorners, 1, 0);
    EXPECT_EQ(Sum(faults), 1U);
}

TEST(MeshFaults, ANormalOfNoLengthAndOneThatPointsAgainst)
{
    MeshFaults const faults = MeshOfPolygons({{{0, 1, 2}, {0, 2, 0}, {}}, {{0, 1, 2}, {0, 1, 0}, {}}}).Faults();
    ExpectFault(faults.zeroNormals, 1, 0);
    ExpectFault(faults.turnedNormals, 1, 1);
    EXPECT_EQ(Sum(faults), 2U);
}

TEST(MeshFaults, EverySecondTriangleOfAStripRunsBack)
{
    EXPECT_EQ(Sum(MeshOfPolygons({{{0, 1, 2, 3}, {0, 0, 0, 0}, {}}}, kStrip).Faults()), 0U);
    ExpectFault(MeshOfPolygons({{{1, 0, 3, 2}, {0, 0, 0, 0}, {}}}, kStrip).Faults().turnedNormals, 1, 0);
}

TEST(MeshFaults, AStripMayNameAVertexTwiceToTurn)
{
    EXPECT_EQ(Sum(MeshOfPolygons({{{0, 1, 2, 2, 3}, {}, {}}}, kStrip).Faults()), 0U);
    ExpectFault(MeshOfPolygons({{{0, 1, 2, 3}, {}, {}}, {{2, 0, 1, 4}, {}, {}}}, kStrip).Faults().degenerate, 1, 1);
}

TEST(MeshFaults, AFanHasItsFirstVertexInEachTriangle)
{
    EXPECT_EQ(Sum(MeshOfPolygons({{{0, 1, 3, 2}, {0, 0, 0, 0}, {}}}, kFan).Faults()), 0U);
    ExpectFault(MeshOfPolygons({{{0, 1, 4, 3}, {}, {}}}, kFan).Faults().degenerate, 1, 0);
}

TEST(MeshFaults, SegmentsOfPolygonsAndVerticesThatAreNotThere)
{
    MeshOfPolygons mesh({{{0, 1, 2}, {}, {}}});
    Authoring::SegmentStoreWriter segments(Wide((mesh.scene.Folder() + "/s.seg").c_str()));
    segments.Mesh("m", std::vector<Indices>{{0}, {1}}, std::vector<Indices>{{0, 1}, {1, 5}}, {});
    segments.Finish();
    MeshFaults const faults = mesh.Faults();
    ExpectFault(faults.faceSegments, 1, 1);
    ExpectFault(faults.edgeSegments, 1, 1);
    EXPECT_EQ(Sum(faults), 2U);
}

TEST(MeshFaults, AVertexThatIsNoNumber)
{
    for (std::size_t place = 0; place < 9; ++place)
        for (double const number : {kNoNumber, std::numeric_limits<double>::infinity()})
        {
            TestScene scene(std::string("<Scene>") + kMeshInfo + "<IPolygonMesh ID=\"m\"/></Scene>");
            double coordinates[] = {0, 0, 0, 1, 0, 0, 0, 0, 1};
            coordinates[place] = number;
            ByteBuilder vertices;
            for (double const coordinate : coordinates)
                vertices.F64(coordinate);
            scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(3, 0, 1, 0) +
                                         vertices.Bytes() + PolygonFront({0, 1, 2}).Byte(0).Bytes());
            MeshFaults const faults = MeshFaults::Of(scene.Begin().Get<IPolygonMesh>("m"));
            ExpectFault(faults.numbers, 1, place / 3);
            EXPECT_EQ(Sum(faults), 1U) << place;
        }
}

namespace
{

// A tetrahedron whose last corner stands in the mesh twice.
OpenEdges EdgesOf(std::vector<Indices> const& triangles)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo + "<IPolygonMesh ID=\"m\"/></Scene>");
    Authoring::MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()),
                                      Authoring::MeshStoreLayout::kMeshInfo);
    Authoring::MeshHead head;
    head.vertexCount = 5;
    head.polygonCount = triangles.size();
    writer.BeginMesh("m", head);
    writer.Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, -0.0, 1});
    for (Indices const& triangle : triangles)
        writer.Polygon({triangle, std::nullopt, {}, {}});
    writer.EndMesh();
    writer.Finish();
    scene.Begin();
    return OpenEdges::Of(scene.Get<IPolygonMesh>("m"));
}

}  // namespace

TEST(OpenEdges, PointsInOnePlaceCloseAMesh)
{
    EXPECT_EQ(EdgesOf({{0, 2, 1}, {0, 1, 3}, {1, 2, 4}, {2, 0, 3}}).count, 0U);
}

TEST(OpenEdges, AHoleHasThoseOfTheTriangleThatIsMissing)
{
    OpenEdges const open = EdgesOf({{0, 2, 1}, {0, 1, 3}, {1, 2, 4}});
    EXPECT_EQ(open.count, 3U);
    EXPECT_EQ(open.polygon, 0U);
}

TEST(OpenEdges, ATriangleThatRunsBackMeetsNoOther)
{
    EXPECT_EQ(EdgesOf({{0, 2, 1}, {0, 1, 3}, {1, 2, 4}, {2, 3, 0}}).count, 6U);
}

TEST(OpenEdges, APolygonWithABadIndexIsLeftOut)
{
    EXPECT_EQ(EdgesOf({{0, 2, 1}, {0, 1, 3}, {1, 2, 4}, {2, 0, 9}}).count, 3U);
}

}  // namespace KVR::Test
