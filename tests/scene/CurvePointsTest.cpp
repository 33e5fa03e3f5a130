#include "scene/CurvePoints.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "tests/scene/CurveScene.h"

namespace KVR::Test
{

namespace
{

using Authoring::CompositeRecord;
using Authoring::CompositeSegment;
using Authoring::CurveRecord;
using Authoring::EllipseRecord;
using Authoring::LineRecord;
using Authoring::NurbsRecord;
using Authoring::PolylineRecord;
using Authoring::RayRecord;
using testing::ElementsAre;

constexpr double kTurn = 6.283185307179586;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

EllipseRecord Ellipse(double ratio, double start, double end)
{
    EllipseRecord ellipse;
    ellipse.center = {10.0, -5.0, 2.0};
    ellipse.majorAxis = {3.0, 4.0, 0.0};
    ellipse.normal = {0.0, 0.0, 2.0};
    ellipse.radiusRatio = ratio;
    ellipse.start = start;
    ellipse.end = end;
    return ellipse;
}

NurbsRecord Bezier(std::vector<Authoring::Triple> points)
{
    NurbsRecord nurbs;
    nurbs.degree = points.size() - 1;
    nurbs.knots.assign(points.size(), 0.0);
    nurbs.knots.insert(nurbs.knots.end(), points.size(), 1.0);
    nurbs.controlPoints = std::move(points);
    nurbs.end = 1.0;
    return nurbs;
}

// One line that keeps what it promises.
void ExpectClose(CurveRecord const& record, double first, double last, CurveTolerance const& tolerance)
{
    CurveScene test(record);
    SceneLines const lines = CurvePoints::Of(test.Curve(), tolerance);
    ASSERT_EQ(lines.Count(), 1U);
    EXPECT_EQ(lines.missing, 0U);
    double const most = tolerance.length > 0.0 ? tolerance.length : tolerance.fraction * ExtentOf(lines.At(0));
    EXPECT_LE(Deviation(test.Data(), first, last, lines.At(0)), most * (1.0 + 1e-6))
        << lines.points.size() / 3 << " points";
}

std::size_t PointsOf(CurveRecord const& record, CurveTolerance const& tolerance = {})
{
    CurveScene test(record);
    return CurvePoints::Of(test.Curve(), tolerance).points.size() / 3;
}

// Nothing but a piece that is missing.
void ExpectNothing(CurveRecord const& record)
{
    CurveScene test(record);
    SceneLines const lines = CurvePoints::Of(test.Curve(), {});
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_TRUE(lines.points.empty());
    EXPECT_EQ(lines.missing, 1U);
}

}  // namespace

TEST(CurvePoints, ALineIsItsTwoEndsInItsOwnDirection)
{
    CurveScene forth({LineRecord{{1, 2, 3}, {0, 0, 2}, -1, 4}});
    EXPECT_THAT(CurvePoints::Of(forth.Curve(), {}).points, ElementsAre(1, 2, 1, 1, 2, 11));
    CurveScene back({LineRecord{{1, 2, 3}, {0, 0, 2}, 4, -1}});
    EXPECT_THAT(CurvePoints::Of(back.Curve(), {}).points, ElementsAre(1, 2, 11, 1, 2, 1));
}

TEST(CurvePoints, WhatHasNoEndHasNoLine)
{
    ExpectNothing({RayRecord{{0, 0, 0}, {1, 0, 0}}});
    ExpectNothing({LineRecord{{0, 0, 0}, {1, 0, 0}, -kInfinite, kInfinite}});
    ExpectNothing({LineRecord{{0, 0, 0}, {1, 0, 0}, 0, 1e300}});
}

TEST(CurvePoints, NumbersThatMakeNoSenseGiveNothing)
{
    ExpectNothing({LineRecord{{kNan, 0, 0}, {1, 0, 0}, 0, 1}});
    ExpectNothing({LineRecord{{0, 0, 0}, {1, 0, 0}, kNan, 1}});
    ExpectNothing({Ellipse(kNan, 0, kTurn)});
    ExpectNothing({Ellipse(0.5, 0, kInfinite)});
    ExpectNothing({Ellipse(0.5, kNan, 1)});
    ExpectNothing({Ellipse(1e300, 0, kTurn)});
    EllipseRecord flat = Ellipse(0.5, 0, kTurn);
    flat.normal = {0, 0, 0};
    ExpectNothing({flat});
    ExpectNothing({PolylineRecord{false, false, {{0, 0, 0}, {1, kNan, 0}, {2, 0, 0}}, {}}});
    ExpectNothing({PolylineRecord{false, false, {{0, 0, 0}}, {}}});
    ExpectNothing({PolylineRecord{}});
    NurbsRecord nurbs = Bezier({{0, 0, 0}, {1, kInfinite, 0}, {2, 0, 0}});
    ExpectNothing({nurbs});
    nurbs = Bezier({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    nurbs.knots[1] = kNan;
    ExpectNothing({nurbs});
    nurbs = Bezier({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    nurbs.degree = 5;
    ExpectNothing({nurbs});
    nurbs = Bezier({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    nurbs.knots = {1, 1, 1, 0, 0, 0};
    ExpectNothing({nurbs});
    nurbs = Bezier({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    nurbs.weights = {1.0, -1.0, 1.0};
    ExpectNothing({nurbs});
}

TEST(CurvePoints, AnEllipseKeepsTheTolerance)
{
    for (double const ratio : {1.0, 0.5, 1e-3, 2.5, -0.7, -3.0, 0.0})
        for (double const fraction : {1e-1, 1e-2, 1e-3, 1e-5})
        {
            SCOPED_TRACE(testing::Message() << ratio << " " << fraction);
            ExpectClose({Ellipse(ratio, 0, kTurn)}, 0, kTurn, {fraction, 0.0});
            ExpectClose({Ellipse(ratio, 1.0, 1.5)}, 1.0, 1.5, {fraction, 0.0});
            ExpectClose({Ellipse(ratio, 2.0, -3.0)}, 2.0, -3.0, {fraction, 0.0});
        }
    ExpectClose({Ellipse(0.5, 0, kTurn)}, 0, kTurn, {1e-3, 0.01});
    // Neither many more points than a circle needs.
    EXPECT_LE(PointsOf({Ellipse(1.0, 0, kTurn)}), 45U);
    EXPECT_GE(PointsOf({Ellipse(1.0, 0, kTurn)}), 40U);
}

TEST(CurvePoints, AnArcEndsAfterOneTurn)
{
    EXPECT_EQ(PointsOf({Ellipse(0.5, 1, 1 + 10 * kTurn)}), PointsOf({Ellipse(0.5, 1, 1 + kTurn)}));
    EXPECT_EQ(PointsOf({Ellipse(0.5, 1, 1 - 1e15)}), PointsOf({Ellipse(0.5, 1, 1 - kTurn)}));
    ExpectClose({Ellipse(0.5, 0, 3 * kTurn)}, 0, 3 * kTurn, {});
    EXPECT_LE(PointsOf({Ellipse(0.5, 1e300, -1e300)}), 100U);
}

TEST(CurvePoints, TheBoxOfAnEllipseIsRightToAMillionth)
{
    std::mt19937 numbers(7);
    std::uniform_real_distribution<double> angle(0.0, kTurn);
    for (int i = 0; i < 20; ++i)
    {
        EllipseRecord ellipse = Ellipse(0.1 + 0.1 * i, angle(numbers), 0.0);
        ellipse.end = ellipse.start + kTurn;
        double const turned = angle(numbers);
        ellipse.majorAxis = {7.0 * std::cos(turned), 7.0 * std::sin(turned), 0.0};
        CurveScene test({ellipse});
        SceneLines const lines = CurvePoints::Of(test.Curve(), CurvePoints::kForBoxes);
        double const other = 7.0 * ellipse.radiusRatio;
        double const half[] = {std::hypot(7.0 * std::cos(turned), other * std::sin(turned)),
                               std::hypot(7.0 * std::sin(turned), other * std::cos(turned))};
        for (std::size_t axis = 0; axis < 2; ++axis)
        {
            double high = -kInfinite;
            double low = kInfinite;
            for (std::size_t k = axis; k < lines.points.size(); k += 3)
            {
                high = std::max(high, lines.points[k]);
                low = std::min(low, lines.points[k]);
            }
            double const size = 2.0 * std::max(half[0], half[1]);
            EXPECT_NEAR(high, ellipse.center[axis] + half[axis], 1e-6 * size);
            EXPECT_NEAR(low, ellipse.center[axis] - half[axis], 1e-6 * size);
        }
    }
}

TEST(CurvePoints, APolylineIsExactAndAClosedOneComesBack)
{
    CurveScene test({PolylineRecord{true, false, {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {2, 1e-9, 0}}, {}}});
    EXPECT_THAT(CurvePoints::Of(test.Curve(), {0.5, 0.0}).points,
                ElementsAre(0, 0, 0, 1, 0, 0, 1, 0, 0, 2, 1e-9, 0, 0, 0, 0));
}

TEST(CurvePoints, ACurveThatMeetsItsChordInTheMiddleIsBentAllTheSame)
{
    ExpectClose({Bezier({{0, 0, 0}, {1, 2, 0}, {2, -2, 0}, {3, 0, 0}})}, 0, 1, {});
    EXPECT_GT(PointsOf({Bezier({{0, 0, 0}, {1, 2, 0}, {2, -2, 0}, {3, 0, 0}})}), 20U);
    // y = t (t - 1/4) (t - 1/2) (t - 3/4) (t - 1) by the coefficients of its powers, as a Bezier curve of degree 5.
    double const powers[] = {0.0, 0.09375, -0.78125, 2.1875, -2.5, 1.0};
    double const choose[] = {1, 5, 10, 10, 5, 1};
    std::vector<Authoring::Triple> points;
    for (int i = 0; i <= 5; ++i)
    {
        double y = 0.0;
        double chooseI = 1.0;
        for (int k = 0; k <= i; ++k)
        {
            y += chooseI / choose[k] * powers[k];
            chooseI = chooseI * (i - k) / (k + 1);
        }
        points.push_back({i / 5.0, 100.0 * y, 0});
    }
    ExpectClose({Bezier(points)}, 0, 1, {});
    EXPECT_GT(PointsOf({Bezier(points)}), 20U);
}

TEST(CurvePoints, NurbsOfAnyDegreeKeepTheTolerance)
{
    std::mt19937 numbers(11);
    std::uniform_real_distribution<double> coordinate(-10.0, 10.0);
    std::uniform_real_distribution<double> weight(0.2, 5.0);
    for (std::uint64_t const degree : {1, 2, 3, 4, 5, 9, 16, 25, 64})
        for (bool const isRational : {false, true})
        {
            NurbsRecord nurbs;
            nurbs.degree = degree;
            std::size_t const count = degree + 8;
            nurbs.knots.assign(degree + 1, -1.0);
            // Repeated ones as well, but for a degree of 1, where the curve would jump.
            for (std::size_t i = 1; i < count - degree; ++i)
                nurbs.knots.push_back(degree > 1 ? static_cast<double>(i / 2) : 0.5 * static_cast<double>(i));
            nurbs.knots.insert(nurbs.knots.end(), degree + 1, 5.0);
            for (std::size_t i = 0; i < count; ++i)
                nurbs.controlPoints.push_back({coordinate(numbers), coordinate(numbers), coordinate(numbers)});
            if (isRational)
            {
                nurbs.weights.emplace();
                for (std::size_t i = 0; i < count; ++i)
                    nurbs.weights->push_back(weight(numbers));
            }
            for (auto const& [start, end] : {std::pair(-1.0, 5.0), std::pair(4.0, 0.5)})
            {
                nurbs.start = start;
                nurbs.end = end;
                for (double const fraction : {1e-2, 1e-3, 1e-4})
                {
                    SCOPED_TRACE(testing::Message() << degree << " " << isRational << " " << start << " " << fraction);
                    ExpectClose({nurbs}, start, end, {fraction, 0.0});
                }
            }
        }
}

TEST(CurvePoints, ANurbsRangeBeyondTheKnotsEndsWithThem)
{
    NurbsRecord nurbs = Bezier({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}});
    nurbs.start = -5.0;
    nurbs.end = 7.0;
    CurveScene test({nurbs});
    SceneLines const lines = CurvePoints::Of(test.Curve(), {});
    ASSERT_EQ(lines.Count(), 1U);
    EXPECT_EQ(lines.points.front(), 0.0);
    EXPECT_EQ(lines.points[lines.points.size() - 3], 2.0);
}

TEST(CurvePoints, AStraightSpanIsOneChord)
{
    EXPECT_EQ(PointsOf({Bezier({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}, {3, 3, 0}})}), 2U);
}

TEST(CurvePoints, HoweverFineTheToleranceThePointsHaveAnEnd)
{
    NurbsRecord const bent = Bezier({{0, 0, 0}, {1, 20, 0}, {2, -20, 5}, {3, 0, 0}});
    for (CurveTolerance const& tolerance : {CurveTolerance{1e-300, 0.0}, CurveTolerance{1e-3, 1e-300}})
    {
        EXPECT_LE(PointsOf({bent}, tolerance), 200'000U);
        EXPECT_LE(PointsOf({Ellipse(0.5, 0, kTurn)}, tolerance), 200'000U);
    }
    for (double const bad : {0.0, -1.0, kNan, kInfinite})
    {
        EXPECT_EQ(PointsOf({bent}, {bad, 0.0}), PointsOf({bent}));
        EXPECT_EQ(PointsOf({bent}, {1e-3, bad}), PointsOf({bent}));
    }
    EXPECT_EQ(PointsOf({bent}, {1e-3, 1e9}), 2U);
}

TEST(CurvePoints, ACurveOfManySpansOfAHighDegreeTakesAMoment)
{
    NurbsRecord nurbs;
    nurbs.degree = 64;
    std::size_t const count = 100'000;
    nurbs.knots.assign(65, 0.0);
    for (std::size_t i = 1; i < count - 64; ++i)
        nurbs.knots.push_back(static_cast<double>(i));
    nurbs.end = static_cast<double>(count - 64);
    nurbs.knots.insert(nurbs.knots.end(), 65, nurbs.end);
    for (std::size_t i = 0; i < count; ++i)
        nurbs.controlPoints.push_back({static_cast<double>(i), static_cast<double>(i * 7919 % 101), 0.0});
    std::size_t const points = PointsOf({nurbs}, {1e-9, 0.0});
    EXPECT_GT(points, 10'000U);
    EXPECT_LE(points, 400'000U);
}

TEST(CurvePoints, SegmentsOfACompositeAreOneLineWhereTheyMeet)
{
    auto const line = [](double from, double to) {
        return std::make_shared<CurveRecord>(CurveRecord{LineRecord{{0, 0, 0}, {1, 0, 0}, from, to}});
    };
    CompositeRecord composite;
    composite.segments = {{"a", line(0, 1), 0, 0, 1, 0}, {"b", line(1, 2), 0, 1, 2, 0}, {"c", line(5, 6), 0, 2, 3, 0}};
    CurveScene test({composite});
    SceneLines const lines = CurvePoints::Of(test.Curve(), {});
    ASSERT_EQ(lines.Count(), 2U);
    EXPECT_THAT(lines.At(0), ElementsAre(0, 0, 0, 1, 0, 0, 2, 0, 0));
    EXPECT_THAT(lines.At(1), ElementsAre(5, 0, 0, 6, 0, 0));
}

TEST(CurvePoints, CompositesMayNestAThousandDeep)
{
    auto inner = std::make_shared<CurveRecord const>(CurveRecord{LineRecord{{0, 0, 0}, {1, 0, 0}, 0, 1}});
    for (int i = 0; i < 1000; ++i)
    {
        CompositeRecord composite;
        composite.segments = {{"s", inner, 0, 0, 1, 0}};
        inner = std::make_shared<CurveRecord const>(CurveRecord{composite});
    }
    CurveScene test(*inner);
    SceneLines const lines = CurvePoints::Of(test.Curve(), {});
    EXPECT_THAT(lines.points, ElementsAre(0, 0, 0, 1, 0, 0));
}

}  // namespace KVR::Test
