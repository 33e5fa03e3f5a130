#include "producer/StoreNeeds.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TestScene.h"

namespace
{

int g_trims = 0;

}  // namespace

// Stands before that of the C library.
extern "C" int malloc_trim(std::size_t /*pad*/)
{
    ++g_trims;
    return 0;
}

namespace KVR::Test
{

namespace
{

constexpr char kFront[] = "<S><MeshInfo GenerateMesh='True' Path='meshes.bin'/><IFile ID='f' IsRoot='1'/>";
constexpr char kMeshes[] = "<IPolygonMesh ID='m' Label='one'/><IPolygonMesh ID='n' Label='no record'/>";

// A store of one mesh and one line.
std::string Store()
{
    return MeshInfoHeader(2).Bytes() + TriangleRecord("m") + RecordFront(1, "line") +
           ByteBuilder().F64(0).F64(0).F64(0).F64(1).F64(2).F64(3).Bytes();
}

class StoreNeedsTest : public testing::Test
{
protected:
    TestScene& Read(std::string const& elements, StoreNeeds needs, bool isWhole)
    {
        needs.isWhole = [this, isWhole](UTF16String const& path)
        {
            m_asked.push_back(Text(path));
            return isWhole;
        };
        m_scene = std::make_unique<TestScene>(kFront + elements + "</S>");
        m_scene->WithFile("meshes.bin", Store());
        StoreNeeds::Set(m_scene->Options(), needs);
        return m_scene->Begin();
    }

    std::vector<std::string> m_asked;
    std::unique_ptr<TestScene> m_scene;
};

}  // namespace

TEST_F(StoreNeedsTest, AreAllUntilSet)
{
    EXPECT_TRUE(StoreNeeds::Of(nullptr).NeedsAll());
    XMLProducerOptions options;
    EXPECT_TRUE(StoreNeeds::Of(&options).NeedsAll());
    StoreNeeds::Set(options, StoreNeeds::None());
    EXPECT_FALSE(StoreNeeds::Of(&options).NeedsAll());
}

TEST_F(StoreNeedsTest, MemoryOfALargeDocumentGoesBackUnlessTheProgramKeepsIt)
{
    for (bool const isReturned : {true, false})
    {
        TestScene scene("<S>" + std::string(std::size_t{4} << 20U, ' ') + "<IFile ID='f' IsRoot='1'/></S>");
        StoreNeeds needs;
        needs.returnsMemory = isReturned;
        StoreNeeds::Set(scene.Options(), needs);
        g_trims = 0;
        scene.Begin();
        EXPECT_EQ(g_trims, isReturned ? 1 : 0);
    }
}

TEST_F(StoreNeedsTest, MeshesOfAWholeStoreAreThereWithoutPolygons)
{
    TestScene& scene = Read(kMeshes, StoreNeeds::None(), true);
    EXPECT_EQ(m_asked, std::vector<std::string>{scene.Folder() + "/meshes.bin"});
    auto const& mesh = scene.Get<IPolygonMesh>("m");
    EXPECT_EQ(Text(mesh.Label()), "one");
    EXPECT_EQ(mesh.PolygonCount(), 0U);
    EXPECT_EQ(mesh.VertexCount(), 0U);
    EXPECT_TRUE(scene.Has("n"));
}

TEST_F(StoreNeedsTest, AStoreThatMayNotBeWholeIsRead)
{
    TestScene& scene = Read(kMeshes, StoreNeeds::None(), false);
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").PolygonCount(), 1U);
    EXPECT_FALSE(scene.Has("n"));
}

TEST_F(StoreNeedsTest, AStoreThatIsNeededIsReadWithoutAQuestion)
{
    StoreNeeds needs = StoreNeeds::None();
    needs.geometry = true;
    TestScene& scene = Read(kMeshes, needs, true);
    EXPECT_TRUE(m_asked.empty());
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").PolygonCount(), 1U);
    EXPECT_FALSE(scene.Has("n"));
}

TEST_F(StoreNeedsTest, TheFirstCurveHasTheStoresRead)
{
    char const* const owners[] = {
        "<ICurve ID='line' Label='L'/>",
        "<IPart ID='p' Label=''><ChildSet><ICurve ID='line' Label='L'/></ChildSet></IPart>",
        "<IGeometricSet ID='s' Label=''><ChildSet><ICurve ID='line' Label='L'/></ChildSet></IGeometricSet>",
    };
    for (std::string const elements : owners)
    {
        TestScene& scene = Read(elements + kMeshes + "<ICurve ID='none' Label=''/>", StoreNeeds::None(), true);
        EXPECT_EQ(scene.Get<ICurve>("line").CurveDataCount(), 1U) << elements;
        EXPECT_FALSE(scene.Has("none")) << elements;
    }
}

TEST_F(StoreNeedsTest, ASceneOfAllKindsHasTheSameObjects)
{
    TestScene all(FullScene());
    WriteSideFiles(all);
    all.Begin();
    for (bool const isWhole : {false, true})
    {
        TestScene scene(FullScene());
        WriteSideFiles(scene);
        StoreNeeds needs = StoreNeeds::None();
        needs.isWhole = [isWhole](UTF16String const&) { return isWhole; };
        StoreNeeds::Set(scene.Options(), needs);
        scene.Begin();
        for (std::string const& id : FullSceneIds())
            EXPECT_EQ(scene.Has(id.c_str()), all.Has(id.c_str())) << id;
        for (char const* const id : {"file", "top", "sub", "part", "other"})
            EXPECT_EQ(scene.ChildIds(id), all.ChildIds(id)) << id;
    }
}

TEST_F(StoreNeedsTest, PropertiesStayAwayWhereTheyAreNotNeeded)
{
    for (bool const isNeeded : {true, false})
    {
        TestScene scene(FullScene());
        WriteSideFiles(scene);
        StoreNeeds needs;
        needs.properties = isNeeded;
        StoreNeeds::Set(scene.Options(), needs);
        scene.Begin();
        EXPECT_EQ(Ids(scene.Get<IInstance>("i1").PropertyIds()).size(), isNeeded ? 1U : 0U);
    }
}

}  // namespace KVR::Test
