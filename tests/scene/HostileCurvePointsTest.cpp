// Polylines of data that claim more than they hold.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "scene/CurvePoints.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// Two points, whatever it claims.
class Polyline final : public IPolyLineData
{
public:
    explicit Polyline(std::uint32_t count) : IPolyLineData(nullptr), m_count(count) {}

    DataReturnCodeEnum HasVectors(bool&) const override { return kDataReturnCode_Ok; }
    DataReturnCodeEnum PointCount(std::uint32_t& count) const override
    {
        count = m_count;
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum Point(int index, double& x, double& y, double& z) const override
    {
        if (index < 0 || index > 1)
            throw std::out_of_range("invalid vector<T> subscript");
        x = index;
        y = z = 0.0;
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum VectorAt(int, double&, double&, double&) const override { return kDataReturnCode_Ok; }

private:
    std::uint32_t m_count;
};

// The segments that it has, which may be itself.
class Composite final : public ICompositeCurveData
{
public:
    explicit Composite(std::uint32_t count) : ICompositeCurveData(nullptr), m_count(count) {}

    DataReturnCodeEnum SegmentCount(std::uint32_t& count) const override
    {
        count = m_count;
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum Segment(int index, ICurveData*& segment) const override
    {
        segment = segments.at(static_cast<std::size_t>(index));
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum SegmentFlag(int, bool&) const override { return kDataReturnCode_Ok; }
    DataReturnCodeEnum SegmentInterval(int, double&, double&) const override { return kDataReturnCode_Ok; }
    DataReturnCodeEnum SegmentValue(int, std::uint32_t&) const override { return kDataReturnCode_Ok; }

    std::vector<ICurveData*> segments;

private:
    std::uint32_t m_count;
};

// A kind that no visitor knows: half a circle.
class Unknown final : public ICurveData
{
public:
    explicit Unknown(double end) : m_end(end) {}

    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor*) override { return kDataReturnCode_Ok; }
    DataReturnCodeEnum ParameterRange(Interval& range) const override
    {
        range = Interval(0.0, m_end);
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum Evaluate_ex(double parameter, Position& point) const override
    {
        if (parameter > 3.2)
            return kDataReturnCode_BadArgument;
        point.Set(std::cos(parameter), std::sin(parameter), 0.0);
        return kDataReturnCode_Ok;
    }

private:
    double m_end;
};

}  // namespace

TEST(HostileCurvePoints, APolylineThatClaimsMorePointsThanItHasGivesNothing)
{
    Polyline good(2);
    EXPECT_THAT(CurvePoints::Of(good, {}).points, ElementsAre(0, 0, 0, 1, 0, 0));
    for (std::uint32_t const count : {3U, 0x7FFFFFFFU, 0xFFFFFFFFU})
    {
        Polyline claims(count);
        SceneLines const lines = CurvePoints::Of(claims, {});
        EXPECT_TRUE(lines.IsEmpty());
        EXPECT_EQ(lines.missing, 1U);
    }
}

TEST(HostileCurvePoints, ACompositeThatClaimsMoreSegmentsMissesThem)
{
    Polyline line(2);
    Composite composite(0xFFFFFFFF);
    composite.segments = {&line, nullptr};
    SceneLines const lines = CurvePoints::Of(composite, {});
    EXPECT_EQ(lines.Count(), 1U);
    EXPECT_EQ(lines.missing, 0xFFFFFFFEU);
}

TEST(HostileCurvePoints, CompositesBeyondTheDeepestAreMissing)
{
    Polyline line(2);
    std::vector<std::unique_ptr<Composite>> nested;
    ICurveData* inner = &line;
    for (int i = 0; i < 5000; ++i)
    {
        nested.push_back(std::make_unique<Composite>(1));
        nested.back()->segments = {inner};
        inner = nested.back().get();
    }
    SceneLines const lines = CurvePoints::Of(*inner, {});
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_EQ(lines.missing, 1U);
}

TEST(HostileCurvePoints, ACompositeOfItselfHasAnEnd)
{
    Composite composite(2);
    composite.segments = {&composite, &composite};
    SceneLines const lines = CurvePoints::Of(composite, {});
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_GT(lines.missing, 0U);
}

TEST(HostileCurvePoints, DataOfAKindThatNobodyKnowsIsFollowedByItsRange)
{
    Unknown half(3.14);
    SceneLines const lines = CurvePoints::Of(half, {});
    ASSERT_EQ(lines.Count(), 1U);
    EXPECT_GT(lines.points.size() / 3, 15U);
    Unknown beyond(4.0);
    EXPECT_TRUE(CurvePoints::Of(beyond, {}).IsEmpty());
}

}  // namespace KVR::Test
