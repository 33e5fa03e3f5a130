#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "framework/api/IPolygonMesh.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

// A polygon as its store says it.
struct Said
{
    std::vector<std::uint64_t> vertices;
    bool hasMaterial = false;
    std::uint64_t material = 0;
    bool hasNormals = false;
    std::vector<std::uint64_t> normals;
};

std::string BytesOf(Said const& said, bool mayHaveNormals)
{
    ByteBuilder bytes = PolygonFront(said.vertices);
    bytes.Byte(said.hasMaterial ? 1 : 0);
    if (said.hasMaterial)
        bytes.U64(said.material);
    if (mayHaveNormals)
        bytes.Byte(said.hasNormals ? 1 : 0);
    if (said.hasNormals)
        for (std::uint64_t const normal : said.normals)
            bytes.U64(normal);
    return bytes.Bytes();
}

std::vector<int> Narrowed(std::vector<std::uint64_t> const& indices)
{
    return {indices.begin(), indices.end()};
}

void ExpectRead(std::vector<Said> const& polygons, bool mayHaveNormals)
{
    std::string record =
        RecordFront(0, "m") + MeshHeadBytes(3, mayHaveNormals ? 1 : 0, polygons.size(), 0) + VertexBytes(3);
    if (mayHaveNormals)
        record += VertexBytes(1);
    for (Said const& said : polygons)
        record += BytesOf(said, mayHaveNormals);
    std::string const table = ByteBuilder().U64(3).String("a").String("b").String("c").Bytes();
    TestScene scene(StoreScene(kMeshInfo, {"m"}));
    scene.WithFile("s.mesh", MeshInfoHeader(1, 24 + record.size()).Bytes() + record + table);
    auto& mesh = scene.Begin().Get<IPolygonMesh>("m");
    ASSERT_EQ(mesh.PolygonCount(), polygons.size());
    IdSetSet materials;
    mesh.PolygonMaterials(materials);
    for (unsigned long i = 0; i < polygons.size(); ++i)
    {
        Said const& said = polygons[i];
        EditablePolygon const& polygon = PolygonOf(mesh, i);
        ASSERT_EQ(List(polygon.VertexIndices()), Narrowed(said.vertices)) << i;
        ASSERT_EQ(List(polygon.NormalIndices()), said.hasNormals ? Narrowed(said.normals) : kNoList) << i;
        ASSERT_EQ(SlotOf(mesh, i) >= 0, said.hasMaterial) << i;
        if (said.hasMaterial)
        {
            auto const slot = static_cast<unsigned long long>(SlotOf(mesh, i));
            ASSERT_EQ(materials.At(slot).At(0).View(), std::string(1, static_cast<char>('a' + said.material))) << i;
        }
    }
}

// Runs of polygons that are alike in all but indices, of any length, with one of another kind between them.
std::vector<Said> Runs(std::size_t count, bool mayHaveNormals, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<Said> polygons;
    Said like;
    bool isShared = true;
    for (std::size_t i = 0, left = 0; i < count; ++i, --left)
    {
        if (left == 0)
        {
            left = 1 + random() % 9;
            like.vertices.resize(random() % 4 == 0 ? 1 + random() % 40 : 3 + random() % 2);
            like.hasMaterial = random() % 3 != 0;
            like.material = random() % 3;
            like.hasNormals = mayHaveNormals && random() % 4 != 0;
            isShared = random() % 2 == 0;
        }
        for (std::uint64_t& vertex : like.vertices)
            vertex = random() % 1000;
        like.normals = like.vertices;
        if (!isShared && random() % 5 != 0)
            like.normals.back() += 1;
        polygons.push_back(like);
    }
    return polygons;
}

TEST(PolygonRun, PolygonsThatAreLikeTheOneBeforeAreReadAsAnyOther)
{
    for (unsigned seed = 0; seed < 20; ++seed)
    {
        ExpectRead(Runs(300, false, seed), false);
        ExpectRead(Runs(300, true, seed), true);
    }
}

TEST(PolygonRun, ARunMayBeLongerThanTheBuffer)
{
    std::vector<Said> triangles(20'000);
    for (std::size_t i = 0; i < triangles.size(); ++i)
    {
        triangles[i].vertices = {i, i + 1, i + 2};
        triangles[i].hasMaterial = true;
        triangles[i].material = i / 10'000;
        triangles[i].hasNormals = true;
        triangles[i].normals = triangles[i].vertices;
    }
    ExpectRead(triangles, true);
    triangles.resize(5'000);
    for (Said& triangle : triangles)
        triangle.normals = {0, 0, 0};
    ExpectRead(triangles, true);
}

}  // namespace

}  // namespace KVR::Test
