#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A set record of the layout that has them: dimension, count, coordinates 0, 1, 2, ...
std::string SetBytes(std::uint32_t dimension, std::uint64_t count)
{
    ByteBuilder bytes;
    bytes.U32(dimension).U64(count);
    for (std::uint64_t i = 0; i < count * (dimension == 2 ? 2 : 3); ++i)
        bytes.F64(static_cast<double>(i));
    return bytes.Bytes();
}

std::string Store(std::uint64_t setCount, std::string const& sets, std::string const& polygons,
                  std::uint64_t polygonCount = 1)
{
    return MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(0, 0, polygonCount, setCount) + sets +
           polygons;
}

struct TextureMesh
{
    explicit TextureMesh(std::string const& bytes, char const* info = kMeshInfo)
        : scene(StoreScene(info, {"m"})), mesh(scene.WithFile("s.mesh", bytes).Begin().Get<IPolygonMesh>("m"))
    {
    }
    TestScene scene;
    IPolygonMesh& mesh;
};

TEST(MeshTextures, SetsOfTwoAndThreeDimensionsComeThrough)
{
    TextureMesh const test(Store(2, SetBytes(2, 2) + SetBytes(3, 1), ""));
    ASSERT_EQ(test.mesh.TextureVertexSetCount(), 2U);
    ITextureVertexSet const& flat = *test.mesh.TextureVertexSetAt(0);
    EXPECT_EQ(flat.VertexDimension(), 2);
    ASSERT_EQ(flat.VertexCount(), 2U);
    MeshTextureVertex2D uv(9, 9);
    ASSERT_EQ(flat.VertexAt(1, uv), kIsValueSpecified_Yes);
    EXPECT_EQ(uv.U(), 2.0);
    EXPECT_EQ(uv.V(), 3.0);
    ITextureVertexSet const& deep = *test.mesh.TextureVertexSetAt(1);
    EXPECT_EQ(deep.VertexDimension(), 3);
    MeshTextureVertex3D uvw(9, 9, 9);
    ASSERT_EQ(deep.VertexAt(0, uvw), kIsValueSpecified_Yes);
    EXPECT_EQ(uvw.W(), 2.0);
    EXPECT_EQ(deep.VertexAt(0, uv), kIsValueSpecified_No);
}

TEST(MeshTextures, AnyDimensionButTwoIsThree)
{
    TextureMesh const test(Store(3, SetBytes(0, 1) + SetBytes(7, 1) + SetBytes(0xFFFFFFFF, 1), ""));
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(test.mesh.TextureVertexSetAt(i)->VertexDimension(), 3);
}

TEST(MeshTextures, ASetWithoutVerticesVanishesAndPolygonsStillCountIt)
{
    std::string const polygon = PolygonFront({0}).Byte(0).Byte(1).U32(1).U64(1).U64(0).Bytes();
    TextureMesh const test(Store(2, SetBytes(2, 0) + SetBytes(2, 1), polygon));
    EXPECT_EQ(test.mesh.TextureVertexSetCount(), 1U);
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureSetIndices()), ElementsAre(1));
}

TEST(MeshTextures, WithoutSetsThereIsNoByteForTextures)
{
    TextureMesh const test(Store(0, "", PolygonFront({0}).Byte(0).Bytes() + PolygonFront({1}).Byte(0).Bytes(), 2));
    ASSERT_EQ(test.mesh.PolygonCount(), 2U);
    EXPECT_THAT(List(PolygonOf(test.mesh, 1).VertexIndices()), ElementsAre(1));
}

TEST(MeshTextures, IndicesStandVertexByVertex)
{
    std::string const polygon = PolygonFront({0, 1})
                                    .Byte(0)
                                    .Byte(1)
                                    .U32(2)
                                    .U64(0)
                                    .U64(10)
                                    .U64(1)
                                    .U64(11)
                                    .U32(2)
                                    .U64(0)
                                    .U64(20)
                                    .U64(1)
                                    .U64(21)
                                    .Bytes();
    TextureMesh const test(Store(2, SetBytes(2, 1) + SetBytes(2, 1), polygon));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureSetIndices()), ElementsAre(0, 1));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureVertexIndices()), ElementsAre(10, 11, 20, 21));
}

TEST(MeshTextures, TheSetsAreThoseOfTheFirstVertexAndTheirNumberThatOfTheLast)
{
    // Three sets at the first vertex, one at the last.
    std::string const fewer = PolygonFront({0, 1})
                                  .Byte(0)
                                  .Byte(1)
                                  .U32(3)
                                  .U64(5)
                                  .U64(50)
                                  .U64(6)
                                  .U64(60)
                                  .U64(7)
                                  .U64(70)
                                  .U32(1)
                                  .U64(9)
                                  .U64(90)
                                  .Bytes();
    TextureMesh const first(Store(1, SetBytes(2, 1), fewer));
    EXPECT_THAT(List(PolygonOf(first.mesh, 0).TextureSetIndices()), ElementsAre(5));
    EXPECT_THAT(List(PolygonOf(first.mesh, 0).TextureVertexIndices()), ElementsAre(50, 60));
    // One set at the first vertex, two at the last: what the lists lack is 0.
    std::string const more =
        PolygonFront({0, 1}).Byte(0).Byte(1).U32(1).U64(5).U64(50).U32(2).U64(9).U64(90).U64(8).U64(80).Bytes();
    TextureMesh const second(Store(1, SetBytes(2, 1), more));
    EXPECT_THAT(List(PolygonOf(second.mesh, 0).TextureSetIndices()), ElementsAre(5, 0));
    EXPECT_THAT(List(PolygonOf(second.mesh, 0).TextureVertexIndices()), ElementsAre(50, 90, 80, 0));
}

TEST(MeshTextures, APolygonMayHaveNone)
{
    TextureMesh const test(Store(1, SetBytes(2, 1), PolygonFront({0}).Byte(0).Byte(0).Bytes()));
    EXPECT_EQ(List(PolygonOf(test.mesh, 0).TextureSetIndices()), kNoList);
    EXPECT_EQ(List(PolygonOf(test.mesh, 0).TextureVertexIndices()), kNoList);
}

TEST(MeshTextures, NormalsAndTexturesStandSideBySide)
{
    std::string const bytes =
        MeshInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(0, 1, 1, 1) + VertexBytes(1) + SetBytes(2, 1) +
        PolygonFront({4, 5}).Byte(0).Byte(1).U64(6).U64(7).Byte(1).U32(1).U64(0).U64(8).U32(1).U64(0).U64(9).Bytes();
    TextureMesh const test(bytes);
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).VertexIndices()), ElementsAre(4, 5));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).NormalIndices()), ElementsAre(6, 7));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureSetIndices()), ElementsAre(0));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureVertexIndices()), ElementsAre(8, 9));
}

TEST(MeshTextures, TheOtherLayoutHasOneSetAndOneIndexPerVertex)
{
    std::string const bytes = GeometryInfoHeader(1).Bytes() + RecordFront(0, "m") + MeshHeadBytes(0, 0, 1, 2) +
                              ByteBuilder().F64(0).F64(1).F64(2).F64(3).Bytes() +
                              PolygonFront({0, 1}).Byte(0).Byte(1).U64(1).U64(0).Bytes();
    TextureMesh const test(bytes, kGeometryInfo);
    ASSERT_EQ(test.mesh.TextureVertexSetCount(), 1U);
    EXPECT_EQ(test.mesh.TextureVertexSetAt(0)->VertexCount(), 2U);
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureSetIndices()), ElementsAre(0));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureVertexIndices()), ElementsAre(1, 0));
}

TEST(MeshTextures, AHostileNumberOfSetsPerVertexIsALengthErrorOrEndsWithTheFile)
{
    std::string const polygon = PolygonFront({0, 1}).Byte(0).Byte(1).U32(0xFFFFFFFF).U64(0).U64(0).Bytes();
    TextureMesh const test(Store(1, SetBytes(2, 1), polygon));
    EXPECT_THAT(List(PolygonOf(test.mesh, 0).TextureSetIndices()), ElementsAre()) << "the last vertex has no sets";
    std::string const last = PolygonFront({0}).Byte(0).Byte(1).U32(0xFFFFFFFF).U64(0).U64(0).Bytes();
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    EXPECT_THROW(scene.WithFile("s.mesh", Store(1, SetBytes(2, 1), last)).Begin(), std::length_error);
}

}  // namespace

}  // namespace KVR::Test
