#include "inspect/statistics/SceneStatistics.h"

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>

#include "inspect/statistics/ReadingMeter.h"
#include "tests/inspect/query/QueryScene.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

TEST(SceneStatistics, SharingTwinsSavesTheBytesOfAllButOne)
{
    ReadingMeter meter(false);
    QueryScene scene(File({"top", "r"}) +
                         Assembly("top", Instance("i", "p") + Instance("j", "p") + Instance("k", "q")) +
                         Part("p", Mesh("a")) + Part("q", Mesh("b")) + Part("r", Mesh("c")),
                     {{"a", {1, 2, 3}}, {"b", {1, 2, 3}}, {"c", {1, 2, 3}, true}});
    meter.Stop();
    SceneStatistics const statistics = SceneStatistics::Of(scene.Model(), meter);
    ASSERT_EQ(statistics.components.size(), 3U);
    EXPECT_EQ(statistics.all.meshes, 3U);
    EXPECT_EQ(statistics.all.triangles, 12U + 12U + 10U);
    EXPECT_EQ(statistics.occurring.triangles, 2U * 12U + 12U + 10U);
    EXPECT_EQ(statistics.all.vertices, 24U);
    EXPECT_EQ(statistics.occurrences, 5U);
    ASSERT_EQ(statistics.duplicates.size(), 1U);
    SceneStatistics::Component const& first = statistics.components.front();
    EXPECT_GT(first.own.bytes, 8 * 24.0);
    EXPECT_EQ(statistics.saved.bytes, first.own.bytes);
    EXPECT_EQ(statistics.saved.memory, first.own.memory);
    EXPECT_GT(statistics.seconds, statistics.all.seconds);
}

TEST(SceneStatistics, BodiesShareTheirStoreByFacesAndEdges)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.push_back(std::make_unique<BODY>(ArcEdge()));
    entities[0]->AddDataId("b0");
    entities[1]->AddDataId("b1");
    std::string const store = StoreBytes(entities, false);
    TestScene scene("<Scene><SatInfo Path='s.sab'/>" + File({"p", "q"}) + Part("p", Body("b0")) +
                    Part("q", Body("b1")) + "</Scene>");
    scene.WithFile("s.sab", store);
    ReadingMeter meter(false);
    scene.Begin();
    meter.Stop();
    KVR::Scene const model(scene.Producer(), scene.Producer().RootObjectId().Id());
    SceneStatistics const statistics = SceneStatistics::Of(model, meter);
    ASSERT_EQ(statistics.components.size(), 2U);
    EXPECT_EQ(statistics.all.faces, 6U);
    auto const bytes = static_cast<double>(store.size());
    // Six faces and twelve edges beside one edge.
    EXPECT_NEAR(statistics.components[0].own.bytes, bytes * 18 / 19, 1e-6);
    EXPECT_NEAR(statistics.components[1].own.bytes, bytes / 19, 1e-6);
    EXPECT_GT(statistics.components[0].own.seconds, 0.0);
}

}  // namespace

}  // namespace KVR::Test
