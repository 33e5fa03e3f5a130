// Points along edges: the corners of straight ones, the polylines of any.

#include "framework/kernel/tessellation/CurveLine.h"

#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRep_Builder.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Line.hxx>
#include <Geom_OffsetCurve.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <cmath>
#include <gp_Ax2.hxx>
#include <gp_Elips.hxx>
#include <gp_Hypr.hxx>
#include <gp_Lin.hxx>
#include <gp_Parab.hxx>

#include "framework/kernel/tessellation/CurveSampler.h"
#include "framework/kernel/tessellation/EdgeCorners.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

Handle(Geom_BSplineCurve) Spline(int degree)
{
    TColgp_Array1OfPnt poles(1, 4);
    for (int i = 1; i <= 4; ++i)
        poles.SetValue(i, gp_Pnt(i, i % 2, 0));
    int const spans = 4 - degree;
    TColStd_Array1OfReal knots(1, spans + 1);
    TColStd_Array1OfInteger multiplicities(1, spans + 1);
    for (int i = 1; i <= spans + 1; ++i)
    {
        knots.SetValue(i, i);
        multiplicities.SetValue(i, i == 1 || i == spans + 1 ? degree + 1 : 1);
    }
    return new Geom_BSplineCurve(poles, knots, multiplicities, degree);
}

void ExpectCorners(TopoDS_Edge const& edge, std::vector<gp_Pnt> const& expected)
{
    std::vector<gp_Pnt> const corners = CornersOf(edge);
    ASSERT_EQ(corners.size(), expected.size());
    for (std::size_t i = 0; i < corners.size(); ++i)
        EXPECT_NEAR(corners[i].Distance(expected[i]), 0.0, 1e-12) << i;
}

// The greatest distance of the points from a curve's rule, which is zero on it; -1 when the edge has no points.
template <class Rule>
double FarthestFrom(TopoDS_Edge const& edge, Rule const& rule, std::size_t& count)
{
    std::vector<double> points;
    if (!PointsOn(edge, {0.001, 0.0}, points))
        return -1.0;
    double farthest = 0.0;
    for (std::size_t i = 0; i < points.size(); i += 3)
        farthest = std::max(farthest, std::abs(rule(points[i], points[i + 1])));
    count = points.size() / 3;
    return farthest;
}

// A parabola, but for a gap in its parameters.
class Holed final : public CurveSource
{
public:
    Holed(double low, double high) : m_low(low), m_high(high) {}
    bool PointAt(double parameter, Point& point) const override
    {
        point = {parameter, parameter * parameter, 0.0};
        return parameter < m_low || parameter > m_high;
    }

private:
    double m_low;
    double m_high;
};

bool Follows(double low, double high)
{
    Holed const curve(low, high);
    return CurveSampler(curve, {1e-4, 0.0}).Smooth({0.0, 1.0}, 2);
}

}  // namespace

TEST(CornersOf, AreThoseOfStraightEdgesAndOfChains)
{
    ExpectCorners(BRepBuilderAPI_MakeEdge(gp_Pnt(1, 2, 3), gp_Pnt(4, 5, 6)).Edge(), {{1, 2, 3}, {4, 5, 6}});
    ExpectCorners(BRepBuilderAPI_MakeEdge(Spline(1)).Edge(), {{1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 0, 0}});
    ExpectCorners(BRepBuilderAPI_MakeEdge(Spline(1), 1.5, 3.0).Edge(), {{1.5, 0.5, 0}, {2, 0, 0}, {3, 1, 0}});
    EXPECT_TRUE(CornersOf(BRepBuilderAPI_MakeEdge(Spline(2)).Edge()).empty());
    EXPECT_TRUE(CornersOf(TopoDS::Edge(ArcEdge())).empty());
}

TEST(PointsOn, FollowEveryKindOfCurve)
{
    gp_Ax2 const axes;
    std::size_t count = 0;
    auto const line = [](double, double y) { return y; };
    EXPECT_LT(FarthestFrom(BRepBuilderAPI_MakeEdge(gp_Lin(gp_Pnt(), gp_Dir(1, 0, 0)), 0, 5).Edge(), line, count), 1e-9);
    EXPECT_EQ(count, 2U);
    auto const ellipse = [](double x, double y) { return x * x / 9 + y * y / 4 - 1; };
    EXPECT_LT(FarthestFrom(BRepBuilderAPI_MakeEdge(gp_Elips(axes, 3, 2)).Edge(), ellipse, count), 1e-9);
    EXPECT_GT(count, 8U);
    auto const circle = [](double x, double y) { return x * x + y * y - 4; };
    EXPECT_LT(FarthestFrom(TopoDS::Edge(ArcEdge()), circle, count), 1e-9);
    EXPECT_GT(count, 8U);
    auto const hyperbola = [](double x, double y) { return x * x / 9 - y * y / 4 - 1; };
    EXPECT_LT(FarthestFrom(BRepBuilderAPI_MakeEdge(gp_Hypr(axes, 3, 2), -1, 1).Edge(), hyperbola, count), 1e-9);
    EXPECT_GT(count, 8U);
    auto const parabola = [](double x, double y) { return y * y - 4 * x; };
    EXPECT_LT(FarthestFrom(BRepBuilderAPI_MakeEdge(gp_Parab(axes, 1), -2, 2).Edge(), parabola, count), 1e-9);
    EXPECT_GT(count, 8U);
    EXPECT_GE(FarthestFrom(BRepBuilderAPI_MakeEdge(Spline(3)).Edge(), line, count), 0.0);
    EXPECT_GT(count, 8U);
}

TEST(PointsOn, AreNoneWithoutACurveOrAnEnd)
{
    std::vector<double> points;
    EXPECT_FALSE(PointsOn(BRepBuilderAPI_MakeEdge(gp_Lin(gp_Pnt(), gp_Dir(1, 0, 0))).Edge(), {}, points));
    TopoDS_Edge edge;
    BRep_Builder().MakeEdge(edge);
    EXPECT_FALSE(PointsOn(edge, {}, points)) << "without a curve";
    edge = BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0)).Edge();
    BRep_Builder().Degenerated(edge, true);
    EXPECT_FALSE(PointsOn(edge, {}, points));
    // Open CASCADE finds no direction in which this one is off its line.
    Handle(Geom_Line) const line = new Geom_Line(gp_Pnt(), gp_Dir(1, 0, 0));
    BRep_Builder().MakeEdge(edge, new Geom_OffsetCurve(line, 1.0, gp_Dir(1, 0, 0)), 1e-7);
    BRep_Builder().Range(edge, 0.0, 1.0);
    EXPECT_FALSE(PointsOn(edge, {}, points));
}

TEST(CurveSampler, FailsWhereverTheCurveHasNoPoint)
{
    EXPECT_TRUE(Follows(2.0, 3.0));
    // At the end of a piece, at its middle, between its middle and its end, and wherever it is divided further.
    EXPECT_FALSE(Follows(0.33, 0.34));
    EXPECT_FALSE(Follows(0.16, 0.17));
    EXPECT_FALSE(Follows(0.08, 0.085));
    EXPECT_FALSE(Follows(0.24, 0.26));
    EXPECT_FALSE(Follows(0.04, 0.042));
    EXPECT_FALSE(Follows(0.98, 0.99));
}

TEST(CurveSampler, AnArcOfNoLengthOrBeyondAllBoundsHasNoPoints)
{
    Holed const curve(2.0, 3.0);
    CurveSampler sampler(curve, {});
    EXPECT_FALSE(sampler.Turning(1.0, 1.0, 1.0));
    EXPECT_FALSE(sampler.Turning(0.0, std::nan(""), 1.0));
    EXPECT_FALSE(sampler.Turning(0.0, 3.0, 1.0)) << "no point at 2";
    EXPECT_TRUE(sampler.Turning(0.0, 1.0, 0.0));
    EXPECT_TRUE(sampler.Smooth({0.0, 0.0}, 3)) << "one point twice";
    EXPECT_FALSE(sampler.Straight({0.5}));
}

}  // namespace KVR::Test
