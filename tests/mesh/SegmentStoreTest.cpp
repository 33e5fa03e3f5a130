#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string const kMeshes = MeshInfoHeader(2).Bytes() + TriangleRecord("m") + TriangleRecord("n");

ByteBuilder Front(std::string_view id, std::uint64_t faces, std::uint64_t edges, std::uint64_t flags)
{
    return ByteBuilder().String(id).U64(faces).U64(edges).U64(flags);
}

struct SegmentScene
{
    explicit SegmentScene(std::string const& segments, std::string const& info = std::string(kMeshInfo) + kSegmentInfo)
        : scene(StoreScene(info, {"m", "n"}))
    {
        scene.WithFile("s.mesh", kMeshes).WithFile("s.seg", segments).Begin();
    }
    IPolygonMesh& Mesh(char const* id) { return scene.Get<IPolygonMesh>(id); }

    TestScene scene;
};

TEST(SegmentStore, FaceAndEdgeSegmentsComeThrough)
{
    SegmentScene test(
        ByteBuilder().U64(1).Bytes() +
        Front("m", 2, 1, 2).Byte(0).Byte(1).U64(2).U64(0).U64(5).U64(0).U64(3).U64(2).U64(1).U64(0).Bytes());
    IPolygonMesh& mesh = test.Mesh("m");
    ASSERT_EQ(mesh.FaceSegmentCount(), 2U);
    FaceSegmentInfo face;
    ASSERT_EQ(mesh.FaceSegmentAt(0, face), kIsValueSpecified_Yes);
    EXPECT_FALSE(face.IsVisible());
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre(0U, 5U));
    ASSERT_EQ(mesh.FaceSegmentAt(1, face), kIsValueSpecified_Yes);
    EXPECT_TRUE(face.IsVisible());
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre());
    ASSERT_EQ(mesh.EdgeSegmentCount(), 1U);
    EdgeSegmentInfo edge;
    ASSERT_EQ(mesh.EdgeSegmentInfoAt(0, edge), kIsValueSpecified_Yes);
    EXPECT_THAT(edge.VertexIndices().Indices(), ElementsAre(2, 1, 0));
    EXPECT_EQ(mesh.FaceSegmentAt(2, face), kIsValueSpecified_No);
    EXPECT_EQ(mesh.EdgeSegmentInfoAt(1, edge), kIsValueSpecified_No);
    EXPECT_EQ(mesh.MeshSegmentCount(), 2U);
    bool visible = true;
    EXPECT_EQ(mesh.MeshSegmentVisibilityAt(0, visible), kIsValueSpecified_Yes);
    EXPECT_FALSE(visible);
    EXPECT_EQ(test.Mesh("n").FaceSegmentCount(), 0U);
}

TEST(SegmentStore, SegmentsBeyondTheFlagsAreVisible)
{
    SegmentScene test(ByteBuilder().U64(1).Bytes() + Front("m", 2, 0, 1).Byte(0).U64(0).U64(0).Bytes());
    FaceSegmentInfo face;
    test.Mesh("m").FaceSegmentAt(0, face);
    EXPECT_FALSE(face.IsVisible());
    test.Mesh("m").FaceSegmentAt(1, face);
    EXPECT_TRUE(face.IsVisible());
}

TEST(SegmentStore, WithoutRecordsNothingIsRead)
{
    SegmentScene test(ByteBuilder().U64(0).Bytes() + Front("m", 1, 0, 0).U64(0).Bytes());
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 0U);
}

TEST(SegmentStore, BeforeAnyMeshStoreItHasNoEffect)
{
    SegmentScene test(ByteBuilder().U64(1).Bytes() + Front("m", 1, 0, 0).U64(0).Bytes(),
                      std::string(kSegmentInfo) + kMeshInfo);
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 0U);
}

TEST(SegmentStore, OfAMeshThatIsNotThereNothingMoreIsConsumed)
{
    // Behind the unknown id the next record is read at once; a full record would be misread.
    SegmentScene test(ByteBuilder().U64(2).String("unknown").Bytes() + Front("m", 1, 0, 0).U64(0).Bytes());
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 1U);
    EXPECT_FALSE(test.scene.Has("unknown"));
}

TEST(SegmentStore, OfAnEmptyIdNothingMoreIsConsumed)
{
    SegmentScene test(ByteBuilder().U64(2).String("").Bytes() + Front("m", 1, 0, 0).U64(0).Bytes());
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 1U);
}

TEST(SegmentStore, ASecondRecordOfAMeshAddsSegments)
{
    SegmentScene test(ByteBuilder().U64(2).Bytes() + Front("m", 1, 0, 0).U64(0).Bytes() +
                      Front("m", 1, 0, 0).U64(0).Bytes());
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 2U);
}

TEST(SegmentStore, AMissingStoreIsPassedOver)
{
    TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"m"}));
    EXPECT_TRUE(scene.WithFile("s.mesh", kMeshes).Begin().Has("m"));
}

TEST(SegmentStore, ItsPathIsTakenFromTheScenesFolder)
{
    std::string const info =
        std::string(kMeshInfo) + R"(<MeshSegmentInfo GenerateMeshSegment="True" Path="a b/../ä.seg"/>)";
    TestScene scene(StoreScene(info, {"m"}));
    scene.WithFile("s.mesh", kMeshes)
        .WithFile("a b/x", "")
        .WithFile("ä.seg", ByteBuilder().U64(1).Bytes() + Front("m", 1, 0, 0).U64(0).Bytes());
    EXPECT_EQ(scene.Begin().Get<IPolygonMesh>("m").FaceSegmentCount(), 1U);
}

TEST(SegmentStore, HostileCountsAreALengthErrorAndWhatWasBuiltStays)
{
    for (std::uint64_t const count :
         {std::uint64_t{1} << 32, std::uint64_t{1} << 40, std::uint64_t{1} << 63, ~std::uint64_t{0}})
    {
        std::string const heads[] = {Front("m", count, 0, 0).Bytes(), Front("m", 0, count, 0).Bytes(),
                                     Front("m", 0, 0, count).Bytes(), Front("m", 1, 0, 0).U64(count).Bytes()};
        for (std::string const& head : heads)
        {
            TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"m"}));
            scene.WithFile("s.mesh", kMeshes).WithFile("s.seg", ByteBuilder().U64(1).Bytes() + head);
            EXPECT_THROW(scene.Begin(), std::length_error);
        }
    }
}

}  // namespace

}  // namespace KVR::Test
