#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>

#include "geometry/curvedata/CreateCurveData.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

// A scene with one curve record "c" of the given type and payload.
struct CurveScene
{
    CurveScene(std::uint64_t type, std::string const& payload) : scene(StoreScene(kMeshInfo, {}, {"c"}))
    {
        scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(type, "c") + payload).Begin();
    }
    template <class Data>
    Data& Get()
    {
        auto* const data = dynamic_cast<Data*>(scene.Get<ICurve>("c").CurveDataAt(0));
        if (!data)
            throw std::runtime_error("another kind of curve");
        return *data;
    }
    ICurveData& Any() { return Get<ICurveData>(); }

    TestScene scene;
};

void ExpectAt(ICurveData const& curve, double parameter, double x, double y, double z)
{
    Position point;
    ASSERT_EQ(curve.Evaluate_ex(parameter, point), 0) << parameter;
    EXPECT_NEAR(point.X(), x, 1e-12) << parameter;
    EXPECT_NEAR(point.Y(), y, 1e-12) << parameter;
    EXPECT_NEAR(point.Z(), z, 1e-12) << parameter;
}

double ParamOf(ICurveData const& curve, double x, double y, double z)
{
    double parameter = -999.0;
    EXPECT_EQ(curve.Param_ex(Position(x, y, z), parameter), 0);
    return parameter;
}

std::string const kLine = ByteBuilder().F64(1).F64(2).F64(3).F64(0).F64(0).F64(2).F64(-1).F64(4).Bytes();

TEST(CurveData, ALineAnswersItsRecordAndItsPoints)
{
    CurveScene test(1, kLine);
    auto& line = test.Get<IStraightData>();
    double x = 0;
    double y = 0;
    double z = 0;
    EXPECT_EQ(line.RootPoint(x, y, z), 0);
    EXPECT_EQ(y, 2.0);
    EXPECT_EQ(line.Direction(x, y, z), 0);
    EXPECT_EQ(z, 2.0);
    Interval range(0, 0);
    EXPECT_EQ(line.ParameterRange(range), 0);
    EXPECT_EQ(range.Lower(), -1.0);
    EXPECT_EQ(range.Upper(), 4.0);
    ExpectAt(line, 2.5, 1, 2, 8);
    Position point;
    EXPECT_EQ(line.StartPoint_ex(point), 0);
    EXPECT_EQ(point.Z(), 1.0);
    EXPECT_EQ(line.EndPoint_ex(point), 0);
    EXPECT_EQ(point.Z(), 11.0);
    EXPECT_DOUBLE_EQ(ParamOf(line, 5, 5, 6), 1.5);
    EXPECT_DOUBLE_EQ(ParamOf(line, 1, 2, 1000), 4.0) << "not beyond the end";
}

TEST(CurveData, ALineWithoutDirectionHasNoParameterOfAPoint)
{
    CurveScene test(1, ByteBuilder().F64(1).F64(2).F64(3).F64(0).F64(0).F64(0).F64(0).F64(1).Bytes());
    double parameter = 7.0;
    EXPECT_NE(test.Any().Param_ex(Position(), parameter), 0);
    EXPECT_EQ(parameter, 7.0);
}

TEST(CurveData, ARayBeginsAndDoesNotEnd)
{
    CurveScene test(2, ByteBuilder().F64(1).F64(1).F64(1).F64(0).F64(3).F64(0).Bytes());
    auto& ray = test.Get<IRayData>();
    ExpectAt(ray, 2, 1, 7, 1);
    Position point;
    EXPECT_EQ(ray.StartPoint_ex(point), 0);
    EXPECT_EQ(point.Y(), 1.0);
    EXPECT_NE(ray.EndPoint_ex(point), 0);
    EXPECT_NE(ray.Evaluate_ex(-0.5, point), 0);
    EXPECT_DOUBLE_EQ(ParamOf(ray, 9, -5, 9), 0.0);
    Interval range(0, 0);
    EXPECT_NE(ray.ParameterRange(range), 0);
}

TEST(CurveData, ACutRayHasItsDefaults)
{
    CurveScene test(2, "");
    double x = 9;
    double y = 9;
    double z = 9;
    test.Get<IRayData>().Origin(x, y, z);
    EXPECT_EQ(x, 0.0);
    test.Get<IRayData>().Direction(x, y, z);
    EXPECT_EQ(x, 1.0);
}

std::string EllipseBytes(double ratio, double start, double end)
{
    return ByteBuilder()
        .BoolPair(true, false)
        .F64(1)
        .F64(0)
        .F64(0)
        .F64(2)
        .F64(0)
        .F64(0)
        .F64(0)
        .F64(0)
        .F64(5)
        .F64(ratio)
        .F64(start)
        .F64(end)
        .Bytes();
}

TEST(CurveData, AnEllipseRunsRoundItsCentre)
{
    double const turn = 2 * std::acos(-1.0);
    CurveScene test(3, EllipseBytes(0.5, 0, turn));
    auto& ellipse = test.Get<IEllipseData>();
    ExpectAt(ellipse, 0, 3, 0, 0);
    ExpectAt(ellipse, turn / 4, 1, 1, 0);
    ExpectAt(ellipse, turn / 2, -1, 0, 0);
    EXPECT_NEAR(ParamOf(ellipse, 1, 7, 3), turn / 4, 1e-7);
    EXPECT_NEAR(ParamOf(ellipse, 1 + 2 * std::cos(1.0), std::sin(1.0), 0), 1.0, 1e-7);
    bool flag = false;
    EXPECT_EQ(ellipse.IsClosed(flag), 0);
    EXPECT_TRUE(flag);
    EXPECT_EQ(ellipse.IsPeriodic(flag), 0);
    EXPECT_FALSE(flag);
    double ratio = 0;
    EXPECT_EQ(ellipse.RadiusRatio(ratio), 0);
    EXPECT_EQ(ratio, 0.5);
}

TEST(CurveData, TheNearestPointOfAnArcMayBeItsEnd)
{
    CurveScene test(3, EllipseBytes(1, 0, 1));
    EXPECT_NEAR(ParamOf(test.Any(), 3, -1, 0), 0.0, 1e-12);
}

TEST(CurveData, ACutEllipseHasItsDefaults)
{
    CurveScene test(3, "");
    auto& ellipse = test.Get<IEllipseData>();
    double x = 9;
    double y = 9;
    double z = 9;
    ellipse.Normal(x, y, z);
    EXPECT_EQ(z, 1.0);
    ellipse.MajorAxis(x, y, z);
    EXPECT_EQ(x, 1.0);
    ellipse.RadiusRatio(x);
    EXPECT_EQ(x, 1.0);
}

TEST(CurveData, AClosedPolylineRepeatsItsFirstPointAndNotItsVectors)
{
    // The first point is (1, 10, 100).
    std::string const points = VertexBytes(4).substr(VertexBytes(1).size());
    CurveScene test(
        4, ByteBuilder().BoolPair(true, true).U64(3).Bytes() + points + ByteBuilder().U64(5).Bytes() + VertexBytes(3));
    auto& polyline = test.Get<IPolyLineData>();
    std::uint32_t count = 0;
    EXPECT_EQ(polyline.PointCount(count), 0);
    EXPECT_EQ(count, 4U);
    double x = 9;
    double y = 9;
    double z = 9;
    EXPECT_EQ(polyline.Point(2, x, y, z), 0);
    EXPECT_EQ(x, 3.0);
    EXPECT_EQ(y, 30.0);
    EXPECT_EQ(z, 300.0);
    EXPECT_EQ(polyline.Point(3, x, y, z), 0);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, 10.0);
    EXPECT_EQ(z, 100.0);
    bool has = false;
    EXPECT_EQ(polyline.HasVectors(has), 0);
    EXPECT_TRUE(has);
    polyline.VectorAt(2, x, y, z);
    EXPECT_EQ(z, 200.0);
    EXPECT_THAT([&] { polyline.VectorAt(3, x, y, z); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { polyline.Point(4, x, y, z); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { polyline.Point(-1, x, y, z); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(CurveData, AStretchOfAPolylineWithoutLengthIsItsFirstPoint)
{
    CurveScene test(4, ByteBuilder().BoolPair(false, false).U64(3).Bytes() + VertexBytes(1) + VertexBytes(2) +
                           ByteBuilder().U64(0).Bytes());
    EXPECT_EQ(ParamOf(test.Any(), 0, 0, 0), 0.0);
}

TEST(CurveData, APolylineRunsFromPointToPoint)
{
    CurveScene test(
        4, ByteBuilder().BoolPair(false, false).U64(3).Bytes() + VertexBytes(3) + ByteBuilder().U64(0).Bytes());
    ICurveData& polyline = test.Any();
    ExpectAt(polyline, 0, 0, 0, 0);
    ExpectAt(polyline, 1, 1, 10, 100);
    ExpectAt(polyline, 1.25, 1.25, 12.5, 125);
    ExpectAt(polyline, 2, 2, 20, 200);
    Position point;
    EXPECT_NE(polyline.Evaluate_ex(2.001, point), 0);
    EXPECT_NE(polyline.Evaluate_ex(-0.001, point), 0);
    EXPECT_NE(polyline.Evaluate_ex(std::nan(""), point), 0);
    EXPECT_NEAR(ParamOf(polyline, 1.25, 12.5, 125), 1.25, 1e-12);
    double x = 9;
    double y = 9;
    double z = 9;
    test.Get<IPolyLineData>().VectorAt(0, x, y, z);
    EXPECT_EQ(x, 9.0) << "there are no vectors";
}

TEST(CurveData, AClosedPolylineWithoutPointsHasOneAtTheOrigin)
{
    CurveScene test(4, ByteBuilder().BoolPair(true, false).U64(0).U64(0).Bytes());
    std::uint32_t count = 0;
    test.Get<IPolyLineData>().PointCount(count);
    EXPECT_EQ(count, 1U);
    ExpectAt(test.Any(), 0, 0, 0, 0);
}

TEST(CurveData, APolylineWithoutPointsHasNoAnswers)
{
    CurveScene test(4, ByteBuilder().BoolPair(false, false).U64(0).U64(0).Bytes());
    Position point;
    double parameter = 0;
    EXPECT_NE(test.Any().StartPoint_ex(point), 0);
    EXPECT_NE(test.Any().EndPoint_ex(point), 0);
    EXPECT_NE(test.Any().Param_ex(point, parameter), 0);
}

void ExpectTooLong(std::uint64_t type, std::string const& payload)
{
    try
    {
        CurveScene const test(type, payload);
        ADD_FAILURE() << "no exception of type " << type;
    }
    catch (std::length_error const& error)
    {
        EXPECT_STREQ(error.what(), "vector<T> too long") << type;
    }
}

TEST(CurveData, CountsThatAreNegativeIn32BitsOrBeyondTheFileAreLengthErrors)
{
    for (std::uint64_t const count : {std::uint64_t{1} << 31, std::uint64_t{1} << 32, std::uint64_t{1} << 40,
                                      (std::uint64_t{1} << 32) + (1U << 31), std::uint64_t{1} << 63, ~std::uint64_t{0}})
    {
        for (std::uint64_t const type : {4, 5, 6})
            ExpectTooLong(type, ByteBuilder().BoolPair(false, false).U64(count).Bytes());
        ExpectTooLong(6, ByteBuilder().BoolPair(false, false).U64(0).U64(count).Bytes());
    }
}

TEST(CurveData, AnyWordButZeroSaysYes)
{
    std::uint64_t const high = std::uint64_t{1} << 40;
    CurveScene polyline(4, ByteBuilder().BoolPair(false, false).U64(1).Bytes() + VertexBytes(1) +
                               ByteBuilder().U64(high).Bytes() + VertexBytes(1));
    bool is = false;
    polyline.Get<IPolyLineData>().HasVectors(is);
    EXPECT_TRUE(is);
    CurveScene nurbs(6, ByteBuilder().Byte(0x80).Byte(2).U64(0).U64(1).Bytes() + VertexBytes(1) +
                            ByteBuilder().U64(high).F64(3).U64(1).F64(0).F64(1).Bytes());
    is = false;
    nurbs.Get<INurbsCurveData>().IsRational(is);
    EXPECT_TRUE(is);
    double x = 0;
    double weight = 0;
    nurbs.Get<INurbsCurveData>().ControlPoint(0, x, x, x, weight);
    EXPECT_EQ(weight, 3.0);
    is = false;
    nurbs.Any().IsClosed(is);
    EXPECT_TRUE(is);
    is = false;
    nurbs.Any().IsPeriodic(is);
    EXPECT_TRUE(is);
}

// A payload of each kind, from 1 on.
std::vector<std::string> Payloads()
{
    std::string const numbers = VertexBytes(2);
    std::string const line = numbers + ByteBuilder().F64(0).F64(1).Bytes();
    std::string const flags = ByteBuilder().BoolPair(true, false).Bytes();
    return {
        line,
        numbers,
        flags + VertexBytes(3) + ByteBuilder().F64(0.5).F64(0).F64(1).Bytes(),
        flags + ByteBuilder().U64(2).Bytes() + numbers + ByteBuilder().U64(1).Bytes() + numbers,
        flags + ByteBuilder().U64(1).U64(0).U64(1).String("s").Raw(line).U64(0).F64(0).F64(1).U64(0).Bytes(),
        flags +
            ByteBuilder().U64(2).F64(0).F64(1).U64(2).Raw(numbers).U64(1).F64(1).F64(1).U64(1).F64(0).F64(1).Bytes()};
}

TEST(CurveData, APayloadIsConsumedExactly)
{
    TempFolder folder;
    std::vector<std::string> const payloads = Payloads();
    for (std::uint32_t kind = 1; kind <= 6; ++kind)
    {
        std::string const& payload = payloads[kind - 1];
        folder.Write("c", payload + "behind");
        FilePtr const file(UTF8String(folder.NarrowPathOf("c")), "rb");
        std::unique_ptr<ICurveData> const curve(CreateCurveData(file, kind, IOUtil::IsBigEndian()));
        EXPECT_TRUE(curve) << kind;
        EXPECT_EQ(std::ftell(file), static_cast<long>(payload.size())) << kind;
    }
}

TEST(CurveData, EveryPrefixOfAPayloadGivesACurve)
{
    TempFolder folder;
    std::vector<std::string> const payloads = Payloads();
    for (std::uint32_t kind = 1; kind <= 6; ++kind)
    {
        std::string const& payload = payloads[kind - 1];
        for (std::size_t size = 0; size < payload.size(); ++size)
        {
            folder.Write("c", payload.substr(0, size));
            FilePtr const file(UTF8String(folder.NarrowPathOf("c")), "rb");
            std::unique_ptr<ICurveData> const curve(CreateCurveData(file, kind, IOUtil::IsBigEndian()));
            EXPECT_TRUE(curve) << kind << " of " << size << " bytes";
            EXPECT_EQ(std::ftell(file), static_cast<long>(size)) << "nothing is left";
        }
    }
}

TEST(CurveData, APayloadOfTheOtherByteOrderIsReadTurnedRound)
{
    std::string bytes;
    for (double const number : {1.0, 2.0, 3.0, 0.0, 0.0, 0.5})
    {
        std::string const own = ByteBuilder().F64(number).Bytes();
        bytes.append(own.rbegin(), own.rend());
    }
    TempFolder folder;
    FilePtr const file(UTF8String(folder.Write("c", bytes)), "rb");
    std::unique_ptr<ICurveData> const curve(CreateCurveData(file, 2, !IOUtil::IsBigEndian()));
    auto const& ray = dynamic_cast<IRayData const&>(*curve);
    double x = 0;
    double y = 0;
    double z = 0;
    ray.Origin(x, y, z);
    EXPECT_EQ(y, 2.0);
    ray.Direction(x, y, z);
    EXPECT_EQ(z, 0.5);
}

TEST(CurveData, WithoutAKnownKindOrAFileThereIsNone)
{
    TempFolder folder;
    folder.Write("c", Payloads().front());
    FilePtr const file(UTF8String(folder.NarrowPathOf("c")), "rb");
    for (std::uint32_t const kind : {0U, 7U, 8U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(CreateCurveData(file, kind, IOUtil::IsBigEndian()), nullptr) << kind;
        EXPECT_EQ(std::ftell(file), 0) << kind;
    }
    for (std::uint32_t kind = 0; kind <= 7; ++kind)
        EXPECT_EQ(CreateCurveData(nullptr, kind, false), nullptr) << kind;
}

TEST(CurveData, ATypeIsACurvesExactlyWhenACurveIsMadeOfIt)
{
    TempFolder folder;
    FilePtr const file(UTF8String(folder.Write("c", "")), "rb");
    for (std::uint32_t type = 0; type < 1000; ++type)
    {
        std::unique_ptr<ICurveData> const curve(CreateCurveData(file, type, IOUtil::IsBigEndian()));
        EXPECT_EQ(IsCurveKind(type), curve != nullptr) << type;
        EXPECT_FALSE(IsCurveKind(type + (std::uint64_t{1} << 32))) << "not by its lower half: " << type;
    }
}

TEST(CurveData, ShortRecordsLeaveZerosBehind)
{
    CurveScene test(4, ByteBuilder().BoolPair(false, false).U64(3).Bytes() + VertexBytes(1));
    double x = 9;
    double y = 9;
    double z = 9;
    test.Get<IPolyLineData>().Point(2, x, y, z);
    EXPECT_EQ(x, 0.0);
}

// A half circle in three rational control points, from (1, 0) over (0, 1) to (-1, 0) in two spans.
std::string CircleBytes(bool shortKnots)
{
    double const w = std::sqrt(0.5);
    ByteBuilder bytes;
    bytes.BoolPair(false, false);
    std::vector<double> knots = {0, 0, 0, 1, 1, 2, 2, 2};
    if (shortKnots)
        knots = {0, 0, 1, 1, 2, 2};
    bytes.U64(knots.size());
    for (double const knot : knots)
        bytes.F64(knot);
    double const points[5][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}};
    bytes.U64(5);
    for (auto const& point : points)
        bytes.F64(point[0]).F64(point[1]).F64(0);
    bytes.U64(1);
    for (double const weight : {1.0, w, 1.0, w, 1.0})
        bytes.F64(weight);
    return bytes.U64(2).F64(0).F64(2).Bytes();
}

TEST(CurveData, ARationalCurveIsACircle)
{
    for (bool const shortKnots : {false, true})
    {
        CurveScene test(6, CircleBytes(shortKnots));
        auto& nurbs = test.Get<INurbsCurveData>();
        for (double t = 0; t <= 2.0; t += 0.0625)
        {
            Position point;
            ASSERT_EQ(nurbs.Evaluate_ex(t, point), 0);
            EXPECT_NEAR(std::hypot(point.X(), point.Y()), 1.0, 1e-12);
            EXPECT_NEAR(ParamOf(nurbs, point.X(), point.Y(), point.Z()), t, 1e-6);
        }
        ExpectAt(nurbs, 0, 1, 0, 0);
        ExpectAt(nurbs, 1, 0, 1, 0);
        ExpectAt(nurbs, 2, -1, 0, 0);
        Position point;
        EXPECT_NE(nurbs.Evaluate_ex(2.01, point), 0);
        double x = 0;
        double y = 0;
        double z = 0;
        double weight = 0;
        EXPECT_EQ(nurbs.ControlPoint(1, x, y, z, weight), 0);
        EXPECT_EQ(weight, std::sqrt(0.5));
        EXPECT_THAT([&] { nurbs.ControlPoint(5, x, y, z, weight); }, ThrowsMessage<std::out_of_range>(kBadIndex));
        EXPECT_THAT([&] { nurbs.Knot(8, x); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    }
}

TEST(CurveData, ACurveThatIsNotRationalHasWeightsOfOneAndItsDegreeBehindItsPoints)
{
    CurveScene test(6, ByteBuilder().BoolPair(false, false).U64(4).F64(0).F64(0).F64(1).F64(1).U64(2).Bytes() +
                           VertexBytes(2) + ByteBuilder().U64(0).U64(1).F64(0).F64(1).Bytes());
    auto& nurbs = test.Get<INurbsCurveData>();
    std::uint32_t number = 0;
    EXPECT_EQ(nurbs.Degree(number), 0);
    EXPECT_EQ(number, 1U);
    bool rational = true;
    EXPECT_EQ(nurbs.IsRational(rational), 0);
    EXPECT_FALSE(rational);
    double x = 0;
    double y = 0;
    double z = 0;
    double weight = 0;
    nurbs.ControlPoint(0, x, y, z, weight);
    EXPECT_EQ(weight, 1.0);
    ExpectAt(nurbs, 0.5, 0.5, 5, 50);
    EXPECT_EQ(nurbs.FitTolerance(x), 0);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(nurbs.ParameterShift(y), 0);
    EXPECT_EQ(y, 0.0);
}

TEST(CurveData, KnotsAndPointsThatMakeNoCurveHaveNoAnswers)
{
    CurveScene test(6, ByteBuilder().BoolPair(false, false).U64(3).F64(0).F64(1).F64(2).U64(2).Bytes() +
                           VertexBytes(2) + ByteBuilder().U64(0).U64(7).F64(0).F64(1).Bytes());
    Position point;
    double parameter = 0;
    EXPECT_NE(test.Any().StartPoint_ex(point), 0);
    EXPECT_NE(test.Any().Evaluate_ex(0.5, point), 0);
    EXPECT_NE(test.Any().Param_ex(point, parameter), 0);
}

}  // namespace

}  // namespace KVR::Test
