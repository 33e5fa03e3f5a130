#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

// A line from x = 0 to x = length at a height, with parameters from 10 to 20.
std::string LineBytes(double height, double length)
{
    return ByteBuilder().F64(-length).F64(height).F64(0).F64(length / 10).F64(0).F64(0).F64(10).F64(20).Bytes();
}

std::string Segment(std::uint64_t kind, std::string_view id, std::string const& payload)
{
    return ByteBuilder().U64(1234).U64(kind).String(id).Bytes() + payload;
}

std::string TwoLines()
{
    return ByteBuilder().BoolPair(false, true).U64(2).Bytes() + Segment(1, "a", LineBytes(0, 1)) +
           Segment(1, "b", LineBytes(5, 2)) +
           ByteBuilder().U64(0).U64(3).F64(0).F64(1).F64(1).F64(4).U64(7).U64(8).Bytes();
}

ICurveData& DataOf(TestScene& scene)
{
    return *scene.Get<ICurve>("c").CurveDataAt(0);
}

TestScene& Begin(TestScene& scene, std::string const& payload, std::string const& behind = "",
                 std::uint64_t records = 1)
{
    return scene.WithFile("s.mesh", MeshInfoHeader(records).Bytes() + RecordFront(5, "c") + payload + behind).Begin();
}

TEST(CompositeCurve, SegmentsComeThroughWithTheirValues)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, TwoLines())));
    std::uint32_t number = 0;
    EXPECT_EQ(composite.SegmentCount(number), 0);
    EXPECT_EQ(number, 2U);
    ICurveData* segment = nullptr;
    EXPECT_EQ(composite.Segment(1, segment), 0);
    EXPECT_NE(dynamic_cast<IStraightData*>(segment), nullptr);
    EXPECT_THROW(composite.Segment(2, segment), std::out_of_range);
    bool flag = false;
    EXPECT_EQ(composite.SegmentFlag(1, flag), 0);
    EXPECT_TRUE(flag);
    composite.SegmentFlag(0, flag);
    EXPECT_FALSE(flag);
    double start = 0;
    double end = 0;
    EXPECT_EQ(composite.SegmentInterval(1, start, end), 0);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(end, 4.0);
    EXPECT_EQ(composite.SegmentValue(1, number), 0);
    EXPECT_EQ(number, 8U);
}

TEST(CompositeCurve, ANegativeIndexHasNoEffectOnFlagIntervalAndValue)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, TwoLines())));
    bool flag = true;
    double start = 5;
    double end = 6;
    std::uint32_t value = 7;
    EXPECT_EQ(composite.SegmentFlag(-1, flag), 0);
    EXPECT_EQ(composite.SegmentInterval(-1, start, end), 0);
    EXPECT_EQ(composite.SegmentValue(-1, value), 0);
    EXPECT_TRUE(flag);
    EXPECT_EQ(start, 5.0);
    EXPECT_EQ(end, 6.0);
    EXPECT_EQ(value, 7U);
    ICurveData* segment = nullptr;
    EXPECT_THROW(composite.Segment(-1, segment), std::out_of_range);
    EXPECT_THROW(composite.SegmentFlag(2, flag), std::out_of_range);
    EXPECT_THROW(composite.SegmentInterval(2, start, end), std::out_of_range);
    EXPECT_THROW(composite.SegmentValue(2, value), std::out_of_range);
}

TEST(CompositeCurve, ItsParameterRunsThroughTheIntervals)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    ICurveData& composite = DataOf(Begin(scene, TwoLines()));
    Position point;
    ASSERT_EQ(composite.Evaluate_ex(0.5, point), 0);
    EXPECT_NEAR(point.X(), 0.5, 1e-12);
    EXPECT_EQ(point.Y(), 0.0);
    ASSERT_EQ(composite.Evaluate_ex(2.5, point), 0);
    EXPECT_NEAR(point.X(), 1.0, 1e-12);
    EXPECT_EQ(point.Y(), 5.0);
    ASSERT_EQ(composite.StartPoint_ex(point), 0);
    EXPECT_NEAR(point.X(), 0.0, 1e-12);
    ASSERT_EQ(composite.EndPoint_ex(point), 0);
    EXPECT_NEAR(point.X(), 2.0, 1e-12);
    EXPECT_NE(composite.Evaluate_ex(4.1, point), 0);
    double parameter = 0;
    ASSERT_EQ(composite.Param_ex(Position(1.0, 4.0, 0), parameter), 0);
    EXPECT_NEAR(parameter, 2.5, 1e-12);
}

TEST(CompositeCurve, ACompositeInACompositeIsReadWithinItsSegment)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c", "after"}));
    std::string const outer = ByteBuilder().BoolPair(false, false).U64(1).Bytes() + Segment(5, "inner", TwoLines()) +
                              ByteBuilder().U64(0).F64(0).F64(1).U64(0).Bytes();
    Begin(scene, outer, RecordFront(2, "after") + VertexBytes(2), 2);
    Position point;
    ASSERT_EQ(DataOf(scene).Evaluate_ex(1.0, point), 0);
    EXPECT_NEAR(point.X(), 2.0, 1e-12);
    EXPECT_TRUE(scene.Has("after")) << "the record is consumed exactly";
}

// A polyline runs from 0 to its last point; a ray has no end, and a composite without segments no range: what lies in
// their intervals is not there.
TEST(CompositeCurve, SegmentsWithoutARangeOfTheirOwnHaveThatOfTheirPointsOrNone)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    std::string const polyline = ByteBuilder()
                                     .BoolPair(false, false)
                                     .U64(3)
                                     .F64(0)
                                     .F64(0)
                                     .F64(0)
                                     .F64(2)
                                     .F64(0)
                                     .F64(0)
                                     .F64(2)
                                     .F64(4)
                                     .F64(0)
                                     .U64(0)
                                     .Bytes();
    std::string const ray = ByteBuilder().F64(0).F64(0).F64(0).F64(1).F64(0).F64(0).Bytes();
    std::string const empty = ByteBuilder().BoolPair(false, false).U64(0).Bytes();
    std::string const bytes = ByteBuilder().BoolPair(false, false).U64(4).Bytes() + Segment(4, "polyline", polyline) +
                              Segment(2, "ray", ray) + Segment(5, "empty", empty) +
                              Segment(4, "no points", ByteBuilder().BoolPair(false, false).U64(0).U64(0).Bytes()) +
                              ByteBuilder().U64(0).U64(0).U64(0).U64(0).Bytes() +
                              ByteBuilder().F64(0).F64(10).F64(10).F64(20).F64(20).F64(30).F64(30).F64(40).Bytes() +
                              ByteBuilder().U64(0).U64(0).U64(0).U64(0).Bytes();
    ICurveData& composite = DataOf(Begin(scene, bytes));
    Position point;
    ASSERT_EQ(composite.Evaluate_ex(7.5, point), kDataReturnCode_Ok);
    EXPECT_NEAR(point.X(), 2.0, 1e-12);
    EXPECT_NEAR(point.Y(), 2.0, 1e-12);
    for (double const parameter : {15.0, 25.0, 35.0})
        EXPECT_EQ(composite.Evaluate_ex(parameter, point), kDataReturnCode_NotAvailable) << parameter;
    double parameter = 0.0;
    ASSERT_EQ(composite.Param_ex(Position(2, 4, 0), parameter), kDataReturnCode_Ok);
    EXPECT_NEAR(parameter, 10.0, 1e-12);
}

TEST(CompositeCurve, WithoutSegmentsNothingIsThere)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    ICurveData& composite = DataOf(Begin(scene, ByteBuilder().BoolPair(false, false).U64(0).Bytes()));
    Position point;
    double parameter = 0.0;
    EXPECT_EQ(composite.StartPoint_ex(point), kDataReturnCode_NotAvailable);
    EXPECT_EQ(composite.EndPoint_ex(point), kDataReturnCode_NotAvailable);
    EXPECT_EQ(composite.Evaluate_ex(0.0, point), kDataReturnCode_NotAvailable);
    EXPECT_EQ(composite.Param_ex(point, parameter), kDataReturnCode_NotAvailable);
}

TEST(CompositeCurve, ASegmentOfAnUnknownKindIsNullAndConsumesNothing)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    std::string const bytes = ByteBuilder().BoolPair(false, false).U64(2).Bytes() + Segment(7, "x", "") +
                              Segment(1, "a", LineBytes(0, 1)) +
                              ByteBuilder().U64(0).U64(0).F64(0).F64(1).F64(1).F64(2).U64(0).U64(0).Bytes();
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, bytes)));
    ICurveData* segment = &DataOf(scene);
    composite.Segment(0, segment);
    EXPECT_EQ(segment, nullptr);
    composite.Segment(1, segment);
    EXPECT_NE(segment, nullptr);
    Position point;
    EXPECT_NE(composite.Evaluate_ex(0.5, point), 0);
    EXPECT_EQ(composite.Evaluate_ex(1.5, point), 0);
}

TEST(CompositeCurve, ASegmentWithoutIdIsLeftOut)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    std::string const bytes = ByteBuilder().BoolPair(false, false).U64(2).Bytes() + Segment(1, "", "") +
                              Segment(1, "a", LineBytes(0, 1)) +
                              ByteBuilder().U64(0).U64(0).F64(0).F64(1).F64(1).F64(2).U64(0).U64(0).Bytes();
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, bytes)));
    std::uint32_t count = 0;
    composite.SegmentCount(count);
    EXPECT_EQ(count, 2U) << "the number of the record";
    ICurveData* segment = nullptr;
    EXPECT_EQ(composite.Segment(0, segment), 0);
    EXPECT_THROW(composite.Segment(1, segment), std::out_of_range);
}

TEST(CompositeCurve, FlagsAndValuesAreKeptAs32Bits)
{
    std::uint64_t const beyond = std::uint64_t{1} << 32;
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    std::string const bytes =
        ByteBuilder().BoolPair(false, false).U64(2).Bytes() + Segment(1, "a", LineBytes(0, 1)) +
        Segment(1, "b", LineBytes(0, 1)) +
        ByteBuilder().U64(beyond).U64(0x80000000).F64(0).F64(1).F64(1).F64(2).U64(beyond + 7).U64(0xFFFFFFFF).Bytes();
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, bytes)));
    bool flag = true;
    composite.SegmentFlag(0, flag);
    EXPECT_FALSE(flag);
    composite.SegmentFlag(1, flag);
    EXPECT_TRUE(flag);
    std::uint32_t value = 0;
    composite.SegmentValue(0, value);
    EXPECT_EQ(value, 7U);
    composite.SegmentValue(1, value);
    EXPECT_EQ(value, 0xFFFFFFFFU);
}

TEST(CompositeCurve, AShortRecordHasItsFullNumberOfFlagsIntervalsAndValues)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    std::string const bytes = ByteBuilder().BoolPair(true, true).U64(3).Bytes() + Segment(1, "a", LineBytes(0, 1));
    auto& composite = dynamic_cast<ICompositeCurveData&>(DataOf(Begin(scene, bytes)));
    std::uint32_t count = 0;
    composite.SegmentCount(count);
    EXPECT_EQ(count, 3U);
    ICurveData* segment = nullptr;
    EXPECT_EQ(composite.Segment(0, segment), 0);
    EXPECT_THROW(composite.Segment(1, segment), std::out_of_range);
    bool flag = true;
    EXPECT_EQ(composite.SegmentFlag(2, flag), 0);
    EXPECT_FALSE(flag);
    double start = 9;
    double end = 9;
    EXPECT_EQ(composite.SegmentInterval(2, start, end), 0);
    EXPECT_EQ(start, 0.0);
    EXPECT_EQ(end, 0.0);
    std::uint32_t value = 9;
    EXPECT_EQ(composite.SegmentValue(2, value), 0);
    EXPECT_EQ(value, 0U);
}

// Composites of one segment each, of which the innermost has a line.
std::string Nested(int levels)
{
    std::string bytes = ByteBuilder().BoolPair(false, false).U64(1).Bytes() + Segment(1, "line", LineBytes(0, 1)) +
                        ByteBuilder().U64(0).F64(0).F64(1).U64(0).Bytes();
    for (int level = 1; level < levels; ++level)
        bytes = ByteBuilder().BoolPair(false, false).U64(1).Bytes() + Segment(5, "x", bytes) +
                ByteBuilder().U64(0).F64(0).F64(1).U64(0).Bytes();
    return bytes;
}

TEST(CompositeCurve, AThousandLevelsAreReadAndThoseBeyondAreNot)
{
    TestScene scene(StoreScene(kMeshInfo, {}, {"c", "after"}));
    Begin(scene, Nested(1000), RecordFront(2, "after") + VertexBytes(2), 2);
    Position point;
    ASSERT_EQ(DataOf(scene).EndPoint_ex(point), 0);
    EXPECT_NEAR(point.X(), 1.0, 1e-12);
    EXPECT_TRUE(scene.Has("after")) << "the record is consumed exactly";
    TestScene beyond(StoreScene(kMeshInfo, {}, {"c"}));
    EXPECT_NE(DataOf(Begin(beyond, Nested(1001))).EndPoint_ex(point), 0);
}

TEST(CompositeCurve, TwoHundredThousandLevelsDoNoHarm)
{
    ByteBuilder bytes;
    for (int level = 0; level < 200000; ++level)
        bytes.BoolPair(false, false).U64(1).U64(0).U64(5).String("x");
    TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
    Begin(scene, bytes.Bytes());
    Position point;
    EXPECT_NE(DataOf(scene).StartPoint_ex(point), 0);
}

}  // namespace

}  // namespace KVR::Test
