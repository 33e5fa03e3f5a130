#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRep_Builder.hxx>
#include <Geom_BSplineCurve.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <cmath>

#include "exchange/export/SampleBudget.h"
#include "framework/kernel/entity.h"
#include "tests/framework/gmk_interface/PlainBrep.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// One face and three edges, of which two have no length.
constexpr std::uint64_t kOfBall = SampleBudget::kPerFace + 3 * SampleBudget::kPerEdge;
constexpr MeshQuality kFine{{1e-3, true}, 0.06};

// What a budget makes of a body.
struct Made
{
    Made(TopoDS_Shape const& shape, MeshQuality const& quality, std::uint64_t shared)
        : body(new BODY(shape)), budget(quality, remarks, shared)
    {
        geometry.kind = GeometryKind::kBody;
        geometry.body = &body;
        geometry.object = &body;
        geometry.id = "b";
    }

    PlainBrep body;
    SceneGeometry geometry;
    std::vector<std::string> remarks;
    SampleBudget budget;
};

// A closed curve of many straight spans, and edges along it, so many times over.
TopoDS_Shape Rings(int spans, int edges)
{
    TColgp_Array1OfPnt poles(1, spans);
    TColStd_Array1OfReal knots(1, spans + 1);
    TColStd_Array1OfInteger multiplicities(1, spans + 1);
    for (int i = 1; i <= spans; ++i)
        poles(i) = gp_Pnt(100.0 * std::cos(6.283185307 * i / spans), 100.0 * std::sin(6.283185307 * i / spans), i % 2);
    for (int i = 1; i <= spans + 1; ++i)
    {
        knots(i) = i;
        multiplicities(i) = 1;
    }
    Handle(Geom_BSplineCurve) const ring = new Geom_BSplineCurve(poles, knots, multiplicities, 1, true);
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    for (int i = 0; i < edges; ++i)
        builder.Add(all, BRepBuilderAPI_MakeEdge(ring, 1.0, spans + 1.0).Edge());
    return all;
}

}  // namespace

TEST(SampleBudget, WhatIsWithinItIsAsFineAsAskedFor)
{
    MeshQuality const quality;
    Made made(BoxShape(1, 2, 3), quality, 0);
    EXPECT_EQ(made.budget.MeshOf(made.geometry).TriangleCount(), 12U);
    EXPECT_EQ(made.budget.LinesOf(made.geometry).Count(), 12U);
    EXPECT_THAT(made.remarks, IsEmpty());
}

TEST(SampleBudget, ABodyThatTakesMoreIsCoarserAndNamed)
{
    Made made(BRepPrimAPI_MakeSphere(10.0).Shape(), kFine, 0);
    SceneMesh const mesh = made.budget.MeshOf(made.geometry);
    EXPECT_GT(mesh.TriangleCount(), 0U);
    EXPECT_LE(mesh.TriangleCount(), kOfBall);
    ASSERT_EQ(made.remarks.size(), 1U);
    EXPECT_THAT(made.remarks.front(), testing::MatchesRegex("b is (8|64|512) times as coarse as asked for, since it "
                                                            "would take more than 3500 triangles or points"));
}

TEST(SampleBudget, WhatIsSharedIsTakenOnce)
{
    std::uint64_t const whole = [&]
    {
        Made made(BRepPrimAPI_MakeSphere(10.0).Shape(), kFine, SampleBudget::kShared);
        return made.budget.MeshOf(made.geometry).TriangleCount();
    }();
    ASSERT_GT(whole, kOfBall);
    Made made(BRepPrimAPI_MakeSphere(10.0).Shape(), kFine, whole - kOfBall);
    EXPECT_EQ(made.budget.MeshOf(made.geometry).TriangleCount(), whole);
    EXPECT_THAT(made.remarks, IsEmpty());
    PlainBrep second(new BODY(BRepPrimAPI_MakeSphere(10.0).Shape()));
    made.geometry.body = &second;
    made.geometry.object = &second;
    EXPECT_LT(made.budget.MeshOf(made.geometry).TriangleCount(), whole);
    EXPECT_EQ(made.remarks.size(), 1U);
}

// Each edge has a point for each span at the least.
TEST(SampleBudget, ABodyWhoseEdgesTakeMoreAtAnyRateHasNoLinesAndIsNamed)
{
    Made made(Rings(3000, 40), MeshQuality(), 0);
    EXPECT_TRUE(made.budget.LinesOf(made.geometry).IsEmpty());
    EXPECT_THAT(made.remarks, ElementsAre("b has no lines, since they would take more than 80000 points"));
}

}  // namespace KVR::Test
