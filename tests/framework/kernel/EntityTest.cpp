// Data ids of entities, and lists and walks of them.

#include "framework/kernel/entity.h"

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <TopoDS_Vertex.hxx>

#include "framework/kernel/data_ids.h"
#include "framework/kernel/entity_iterator.h"
#include "framework/kernel/entity_list.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

TEST(DataIds, AreAppendedInTheOrderInWhichTheyWereGiven)
{
    BODY body(BoxShape(1, 2, 3));
    body.AddDataId("b");
    body.AddDataId("a");
    body.AddDataId("b");
    GMK::gmk_array<DXID_DATA> ids;
    ids.Push(DXID_DATA("before"));
    EXPECT_TRUE(gki_get_datax_id(&body, ids).ok());
    ASSERT_EQ(ids.count(), 4);
    EXPECT_EQ(ids[0].dx_id(), "before");
    EXPECT_EQ(ids[1].dx_id(), "b");
    EXPECT_EQ(ids[2].dx_id(), "a");
    EXPECT_EQ(ids[3].dx_id(), "b");
    EXPECT_EQ(gki_get_datax_id(nullptr, ids).error_number(), outcome::kBadArgument);
    EXPECT_EQ(ids.count(), 4);
}

TEST(DataIds, OfFacesAndEdgesAreTheirsWhetherTheyWereAskedForOrNot)
{
    using Ids = std::vector<std::string>;
    BODY body(BoxShape(1, 2, 3));
    body.AddFaceDataId(2, "early");
    body.AddFaceDataId(6, "no such face");
    EXPECT_EQ(body.FaceList()[2]->DataIds(), Ids{"early"});
    body.AddFaceDataId(2, "late");
    body.AddFaceDataId(6, "no such face either");
    body.AddEdgeDataId(11, "early");
    EXPECT_EQ(body.EdgeList()[11]->DataIds(), Ids{"early"});
    body.AddEdgeDataId(11, "late");
    body.AddEdgeDataId(12, "no such edge");
    EXPECT_EQ(body.FaceList()[2]->DataIds(), (Ids{"early", "late"}));
    EXPECT_EQ(body.EdgeList()[11]->DataIds(), (Ids{"early", "late"}));
    EXPECT_EQ(body.FaceDataIds().size(), 4U);
    EXPECT_EQ(body.EdgeDataIds().size(), 3U);
}

TEST(EntityIterator, WalksEachFaceAndEdgeOnce)
{
    BODY const body(BoxShape(1, 2, 3));
    std::size_t faces = 0;
    using Faces = GMK::entity_iterator<BODY, FACE>;
    for (Faces at(&body); !(at == Faces()); ++at)
        EXPECT_EQ(static_cast<FACE*>(at), body.FaceList()[faces++].get());
    EXPECT_EQ(faces, 6U);
    std::size_t edges = 0;
    using Edges = GMK::entity_iterator<BODY, EDGE>;
    for (Edges at(&body); EDGE* const edge = at; ++at)
        EXPECT_EQ(edge, body.EdgeList()[edges++].get());
    EXPECT_EQ(edges, 12U);
    BODY const bare{TopoDS_Vertex()};
    EXPECT_TRUE(Faces(&bare) == Faces());
    EXPECT_TRUE(Faces(nullptr) == Faces());
    EXPECT_FALSE(Faces(&body) == Faces());
    EXPECT_FALSE(static_cast<FACE*>(Faces()));
}

TEST(EntityList, KeepsEachOnceUnlessRepeatsAreWanted)
{
    BODY body(BoxShape(1, 2, 3));
    ENTITY_LIST once(false);
    ENTITY_LIST often(true);
    for (ENTITY_LIST* const list : {&once, &often})
    {
        list->add(&body);
        list->add(nullptr);
        list->add(&body);
        EXPECT_EQ((*list)[0], &body);
        EXPECT_FALSE((*list)[-1]);
        EXPECT_FALSE((*list)[list->count()]);
    }
    EXPECT_EQ(once.count(), 1);
    EXPECT_EQ(often.count(), 2);
    once.clear();
    EXPECT_EQ(once.count(), 0);
    once.add(&body);
    EXPECT_EQ(once.count(), 1);
}

TEST(EntityViews, AreNullForAnotherKind)
{
    BODY body(BoxShape(1, 2, 3));
    EDGE edge(ArcEdge());
    EXPECT_EQ(GMK::BODY_xs(&body).body, &body);
    EXPECT_EQ(GMK::EDGE_xs(&edge).edge, &edge);
    EXPECT_FALSE(GMK::BODY_xs(&edge).body);
    EXPECT_FALSE(GMK::EDGE_xs(&body).edge);
    EXPECT_FALSE(GMK::BODY_xs(nullptr).body);
    EXPECT_FALSE(GMK::EDGE_xs(nullptr).edge);
}

}  // namespace KVR::Test
