#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <vector>

#include "mesh/SideStoreReader.h"
#include "mesh/XMLPolygonMesh.h"
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

TEST(SegmentStore, RecordsComeInAnyOrder)
{
    std::string const unknown(300'000, 'x');
    SegmentScene test(ByteBuilder().U64(4).Bytes() + Front("n", 1, 0, 1).Byte(1).U64(1).U64(7).Bytes() +
                      Front("m", 2, 0, 2).Byte(1).Byte(0).U64(1).U64(8).U64(2).U64(3).U64(4).Bytes() +
                      ByteBuilder().String(unknown).Bytes() + Front("n", 2, 0, 1).Byte(0).U64(0).U64(1).U64(9).Bytes());
    auto const faceOf = [&](char const* id, unsigned long index)
    {
        FaceSegmentInfo face;
        EXPECT_EQ(test.Mesh(id).FaceSegmentAt(index, face), kIsValueSpecified_Yes);
        return face;
    };
    EXPECT_EQ(test.Mesh("m").FaceSegmentCount(), 2U);
    EXPECT_THAT(faceOf("m", 0).PolygonIndices().Indices(), ElementsAre(8U));
    EXPECT_TRUE(faceOf("m", 0).IsVisible());
    EXPECT_THAT(faceOf("m", 1).PolygonIndices().Indices(), ElementsAre(3U, 4U));
    EXPECT_FALSE(faceOf("m", 1).IsVisible());
    EXPECT_EQ(test.Mesh("n").FaceSegmentCount(), 3U);
    EXPECT_THAT(faceOf("n", 0).PolygonIndices().Indices(), ElementsAre(7U));
    EXPECT_TRUE(faceOf("n", 0).IsVisible());
    EXPECT_THAT(faceOf("n", 1).PolygonIndices().Indices(), ElementsAre());
    EXPECT_FALSE(faceOf("n", 1).IsVisible());
    EXPECT_THAT(faceOf("n", 2).PolygonIndices().Indices(), ElementsAre(9U));
    EXPECT_TRUE(faceOf("n", 2).IsVisible());
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

TEST(SegmentStore, AnIdThatIsNamedBeforeItsMeshIsBuiltStaysWithoutOne)
{
    TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo + R"(<MeshInfo GenerateMesh="True" Path="t"/>)",
                               {"m", "late", "other"}));
    scene.WithFile("s.mesh", kMeshes)
        .WithFile("s.seg", ByteBuilder().U64(1).String("late").Bytes())
        .WithFile("t", MeshInfoHeader(2).Bytes() + TriangleRecord("late") + TriangleRecord("other"));
    scene.Begin();
    EXPECT_TRUE(scene.Has("m"));
    EXPECT_TRUE(scene.Has("other"));
    EXPECT_FALSE(scene.Has("late"));
}

TEST(SegmentStore, AShortFileGivesWhatItHolds)
{
    // Two polygons of three, one edge segment of two.
    SegmentScene faces(ByteBuilder().U64(9).Bytes() +
                       Front("m", 2, 1, 3).Byte(0).Byte(7).Byte(0).U64(3).U64(4).U64(5).Bytes());
    IPolygonMesh& mesh = faces.Mesh("m");
    ASSERT_EQ(mesh.FaceSegmentCount(), 2U) << "built to the count";
    FaceSegmentInfo face;
    mesh.FaceSegmentAt(0, face);
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre(4U, 5U, 0U));
    EXPECT_FALSE(face.IsVisible());
    mesh.FaceSegmentAt(1, face);
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre());
    EXPECT_TRUE(face.IsVisible()) << "any byte but 0";
    ASSERT_EQ(mesh.EdgeSegmentCount(), 1U);
    EXPECT_EQ(faces.Mesh("n").FaceSegmentCount(), 0U);
}

TEST(SegmentStore, IndicesAreNarrowedTo32Bits)
{
    SegmentScene test(
        ByteBuilder().U64(1).Bytes() +
        Front("m", 1, 1, 0).U64(2).U64((std::uint64_t{5} << 32) + 1).U64(0xFFFFFFFF).U64(1).U64(0xFFFFFFFF).Bytes());
    FaceSegmentInfo face;
    test.Mesh("m").FaceSegmentAt(0, face);
    EXPECT_THAT(face.PolygonIndices().Indices(), ElementsAre(1U, 0xFFFFFFFFU));
    EdgeSegmentInfo edge;
    test.Mesh("m").EdgeSegmentInfoAt(0, edge);
    EXPECT_THAT(edge.VertexIndices().Indices(), ElementsAre(-1));
}

TEST(SegmentStore, WhetherThereWereFlagsIsNoted)
{
    TempFolder folder;
    MeshStore meshes;
    for (char const* const id : {"m", "n"})
    {
        meshes[id].owned = std::make_unique<XMLPolygonMesh>(UTF8String(id), nullptr);
        meshes[id].object = meshes[id].owned.get();
    }
    folder.Write("s", ByteBuilder().U64(2).Bytes() + Front("m", 1, 0, 1).Byte(0).U64(0).Bytes() +
                          Front("n", 1, 0, 0).U64(0).Bytes());
    SideStoreReader reader(folder.PathOf("scene.xml"), nullptr, false);
    ASSERT_TRUE(reader.ReadMeshSegmentStore(folder.PathOf("s"), meshes));
    EXPECT_TRUE(meshes["m"].object->StoreContent().isSegmentVisibilityStored);
    EXPECT_FALSE(meshes["n"].object->StoreContent().isSegmentVisibilityStored);
}

TEST(SegmentStore, ALongListComesThroughWhole)
{
    constexpr std::uint64_t kCount = 5000;
    ByteBuilder bytes = Front("m", 1, 1, 0);
    for (int list = 0; list < 2; ++list)
    {
        bytes.U64(kCount);
        for (std::uint64_t i = 0; i < kCount; ++i)
            bytes.U64(3 * i);
    }
    SegmentScene test(ByteBuilder().U64(1).Bytes() + bytes.Bytes());
    FaceSegmentInfo face;
    EdgeSegmentInfo edge;
    test.Mesh("m").FaceSegmentAt(0, face);
    test.Mesh("m").EdgeSegmentInfoAt(0, edge);
    ASSERT_EQ(face.PolygonIndices().Indices().size(), kCount);
    ASSERT_EQ(edge.VertexIndices().Indices().size(), kCount);
    for (std::size_t i = 0; i < kCount; ++i)
    {
        ASSERT_EQ(face.PolygonIndices().Indices()[i], 3 * i);
        ASSERT_EQ(edge.VertexIndices().Indices()[i], static_cast<int>(3 * i));
    }
}

TEST(SegmentStore, IndicesThatFollowOneAnotherComeThroughAsOthersDo)
{
    // From places where 31 and 32 bits end, too; up to the end, and up to a place before it; and cut off by the file.
    constexpr std::uint64_t kFirsts[] = {0, 7, 0x7FFFFFF0, 0xFFFFFFF0};
    constexpr std::size_t kLengths[] = {1, 2, 63, 64, 65, 200, 40000};
    constexpr std::size_t kBreak = 130;
    std::vector<std::vector<std::uint64_t>> lists;
    for (std::uint64_t const first : kFirsts)
    {
        for (std::size_t const length : kLengths)
        {
            std::vector<std::uint64_t>& list = lists.emplace_back(length);
            std::iota(list.begin(), list.end(), first);
            if (length == 200)
                list[kBreak] += 1;
        }
    }
    ByteBuilder bytes = Front("m", 0, lists.size() + 1, 0);
    for (auto const& list : lists)
    {
        bytes.U64(list.size());
        for (std::uint64_t const index : list)
            bytes.U64(index);
    }
    SegmentScene test(ByteBuilder().U64(1).Bytes() + bytes.U64(4).U64(8).U64(9).Bytes());
    IPolygonMesh& mesh = test.Mesh("m");
    ASSERT_EQ(mesh.EdgeSegmentCount(), lists.size() + 1);
    EdgeSegmentInfo edge;
    for (std::size_t i = 0; i < lists.size(); ++i)
    {
        std::vector<int> expected;
        for (std::uint64_t const index : lists[i])
            expected.push_back(static_cast<int>(index));
        ASSERT_EQ(mesh.EdgeSegmentInfoAt(i, edge), kIsValueSpecified_Yes);
        EXPECT_EQ(edge.VertexIndices().Indices(), expected) << i;
    }
    mesh.EdgeSegmentInfoAt(lists.size(), edge);
    EXPECT_THAT(edge.VertexIndices().Indices(), ElementsAre(8, 9, 0, 0));
}

TEST(SegmentStore, FacesOfPolygonsThatFollowOneAnotherTakeNoMemoryForThem)
{
    constexpr std::uint64_t kCount = 100'000;
    TempFolder const folder;
    MeshStore meshes;
    meshes["m"].owned = std::make_unique<XMLPolygonMesh>(UTF8String("m"), nullptr);
    meshes["m"].object = meshes["m"].owned.get();
    ByteBuilder bytes = ByteBuilder().U64(1).Raw(Front("m", 1, 0, 0).Bytes()).U64(kCount);
    for (std::uint64_t i = 0; i < kCount; ++i)
        bytes.U64(i);
    folder.Write("s", bytes.Bytes());
    ASSERT_TRUE(
        SideStoreReader(folder.PathOf("scene.xml"), nullptr, false).ReadMeshSegmentStore(folder.PathOf("s"), meshes));
    MeshSegment const& face = meshes["m"].object->StoreContent().faceSegments.All()[0];
    EXPECT_EQ(face.indices, nullptr);
    EXPECT_EQ(face.count, kCount);
    EXPECT_EQ(face.At(kCount - 1), static_cast<std::int32_t>(kCount - 1));
}

TEST(SegmentStore, HostileCountsAreALengthError)
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
