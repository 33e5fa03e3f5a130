// Curves that are made of edges.

#include "framework/kernel/curve.h"

#include <gtest/gtest.h>

#include <BRep_Builder.hxx>
#include <Geom_Curve.hxx>
#include <TopoDS_Edge.hxx>
#include <cmath>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

class CurveOfEdge : public testing::Test
{
protected:
    // Null when it cannot be made.
    curve* Make(TopoDS_Shape const& shape, bool sharesGeometry = false)
    {
        ActiveStreamScope const active(&m_stream);
        EDGE edge(shape);
        m_stream.Remove(&edge);
        curve* made = nullptr;
        m_result = GKI_MAKE_CURVE::from_edge(&edge, sharesGeometry, made);
        EXPECT_EQ(m_result.ok(), made != nullptr);
        return made;
    }

    static void ExpectFromTo(curve const& made, gp_Pnt const& start, gp_Pnt const& end)
    {
        EXPECT_LT(made.First(), made.Last());
        EXPECT_NEAR(made.Geometry()->Value(made.First()).Distance(start), 0.0, 1e-12);
        EXPECT_NEAR(made.Geometry()->Value(made.Last()).Distance(end), 0.0, 1e-12);
    }

    HISTORY_STREAM m_stream;
    outcome m_result;
};

TEST_F(CurveOfEdge, RunsFromItsStartToItsEnd)
{
    curve const* const made = Make(ArcEdge());
    ASSERT_TRUE(made);
    ExpectFromTo(*made, gp_Pnt(2, 0, 0), gp_Pnt(0, 2, 0));
    EXPECT_EQ(m_stream.CurveCount(), 1U);
    EXPECT_FALSE(made->IsDestroyed());
}

TEST_F(CurveOfEdge, OfAReversedEdgeRunsTheOtherWay)
{
    for (bool const sharesGeometry : {false, true})
    {
        curve const* const made = Make(ArcEdge().Reversed(), sharesGeometry);
        ASSERT_TRUE(made);
        ExpectFromTo(*made, gp_Pnt(0, 2, 0), gp_Pnt(2, 0, 0));
        double const middle = (made->First() + made->Last()) / 2;
        EXPECT_NEAR(made->Geometry()->Value(middle).Distance(gp_Pnt(std::sqrt(2.0), std::sqrt(2.0), 0)), 0.0, 1e-12)
            << "along the edge, not round the other side";
    }
}

TEST_F(CurveOfEdge, IsWhereTheEdgeIs)
{
    gp_Trsf move;
    move.SetTranslation(gp_Vec(10, 0, 0));
    curve const* const made = Make(ArcEdge().Moved(TopLoc_Location(move)));
    ASSERT_TRUE(made);
    ExpectFromTo(*made, gp_Pnt(12, 0, 0), gp_Pnt(10, 2, 0));
}

TEST_F(CurveOfEdge, HasGeometryOfItsOwnUnlessItSharesIt)
{
    TopoDS_Shape const arc = ArcEdge();
    curve const* const own = Make(arc, false);
    curve const* const shared = Make(arc, true);
    curve const* const sharedToo = Make(arc, true);
    ASSERT_TRUE(own && shared && sharedToo);
    EXPECT_NE(own->Geometry(), shared->Geometry());
    EXPECT_EQ(shared->Geometry(), sharedToo->Geometry());
}

TEST_F(CurveOfEdge, WithoutACurveInSpaceIsABadOutcome)
{
    TopoDS_Edge bare;
    BRep_Builder().MakeEdge(bare);
    EXPECT_EQ(Make(bare), nullptr);
    EXPECT_EQ(m_result.error_number(), outcome::kBadGeometry);
    EXPECT_EQ(m_stream.CurveCount(), 0U);
}

TEST_F(CurveOfEdge, WithoutAnEdgeOrAnActiveStreamIsABadOutcomeThatLeavesTheOutputAlone)
{
    curve* const before = Make(ArcEdge());
    curve* made = before;
    EXPECT_EQ(GKI_MAKE_CURVE::from_edge(nullptr, false, made).error_number(), outcome::kBadArgument);
    EXPECT_EQ(made, before);
    ASSERT_EQ(gki_global_data().activeStream, nullptr);
    EDGE edge(ArcEdge());
    EXPECT_EQ(GKI_MAKE_CURVE::from_edge(&edge, false, made).error_number(), outcome::kBadArgument);
    EXPECT_EQ(made, before);
}

}  // namespace

}  // namespace KVR::Test
