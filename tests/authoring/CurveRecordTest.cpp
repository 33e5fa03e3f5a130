// Curves made by chance come back as they were written.

#include "authoring/CurveRecord.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "framework/api/Exception.h"
#include "framework/api/ICurveData.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;

constexpr int kDeepest = 3;

double AnyNumber()
{
    // A bit pattern may be infinite, or no number at all.
    return *rc::gen::oneOf(rc::gen::arbitrary<double>(),
                           rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                                        [](std::uint64_t bits) { return std::bit_cast<double>(bits); }));
}

bool AnyFlag()
{
    return *rc::gen::arbitrary<bool>();
}

std::size_t AnyCount(std::size_t most)
{
    return *rc::gen::inRange<std::size_t>(0, most + 1);
}

Triple AnyTriple()
{
    return {AnyNumber(), AnyNumber(), AnyNumber()};
}

std::vector<Triple> AnyTriples(std::size_t count)
{
    std::vector<Triple> triples(count);
    for (Triple& triple : triples)
        triple = AnyTriple();
    return triples;
}

std::vector<double> AnyNumbers(std::size_t count)
{
    std::vector<double> numbers(count);
    for (double& number : numbers)
        number = AnyNumber();
    return numbers;
}

CurveRecord AnyCurve(int level);

PolylineRecord AnyPolyline()
{
    PolylineRecord polyline{AnyFlag(), AnyFlag(), AnyTriples(AnyCount(6)), std::nullopt};
    if (AnyFlag())
        polyline.vectors = AnyTriples(polyline.points.size());
    return polyline;
}

CompositeRecord AnyComposite(int level)
{
    CompositeRecord composite{AnyFlag(), AnyFlag(), {}};
    for (std::size_t i = AnyCount(4); i > 0; --i)
        composite.segments.push_back({"s", std::make_shared<CurveRecord>(AnyCurve(level + 1)),
                                      *rc::gen::arbitrary<std::uint32_t>(), AnyNumber(), AnyNumber(),
                                      *rc::gen::arbitrary<std::uint32_t>()});
    return composite;
}

NurbsRecord AnyNurbs()
{
    NurbsRecord nurbs{AnyFlag(), AnyFlag(), AnyNumbers(AnyCount(8)), AnyTriples(AnyCount(5)), std::nullopt, 0, 0, 0};
    if (AnyFlag())
        nurbs.weights = AnyNumbers(nurbs.controlPoints.size());
    nurbs.degree = *rc::gen::inRange<std::uint64_t>(0, 8);
    nurbs.start = AnyNumber();
    nurbs.end = AnyNumber();
    return nurbs;
}

CurveRecord AnyCurve(int level)
{
    switch (*rc::gen::inRange(level < kDeepest ? 0 : 1, 6))
    {
        case 0:
            return {AnyComposite(level)};
        case 1:
            return {LineRecord{AnyTriple(), AnyTriple(), AnyNumber(), AnyNumber()}};
        case 2:
            return {RayRecord{AnyTriple(), AnyTriple()}};
        case 3:
            return {EllipseRecord{AnyFlag(), AnyFlag(), AnyTriple(), AnyTriple(), AnyTriple(), AnyNumber(), AnyNumber(),
                                  AnyNumber()}};
        case 4:
            return {AnyPolyline()};
        default:
            return {AnyNurbs()};
    }
}

void ExpectSame(double written, double read)
{
    RC_ASSERT(std::bit_cast<std::uint64_t>(written) == std::bit_cast<std::uint64_t>(read));
}

void ExpectSame(CurveRecord const& written, ICurveData* read);

// Compares a record with the data that was read from it.
class Comparison
{
public:
    explicit Comparison(ICurveData* read) : m_read(read) {}

    void operator()(LineRecord const& line) const
    {
        auto const& read = As<IStraightData>();
        ExpectTriple(line.rootPoint, [&](auto&... xyz) { return read.RootPoint(xyz...); });
        ExpectTriple(line.direction, [&](auto&... xyz) { return read.Direction(xyz...); });
        ExpectRange(line.start, line.end);
    }

    void operator()(RayRecord const& ray) const
    {
        auto const& read = As<IRayData>();
        ExpectTriple(ray.origin, [&](auto&... xyz) { return read.Origin(xyz...); });
        ExpectTriple(ray.direction, [&](auto&... xyz) { return read.Direction(xyz...); });
    }

    void operator()(EllipseRecord const& ellipse) const
    {
        auto const& read = As<IEllipseData>();
        ExpectFlags(ellipse);
        ExpectTriple(ellipse.center, [&](auto&... xyz) { return read.Center(xyz...); });
        ExpectTriple(ellipse.majorAxis, [&](auto&... xyz) { return read.MajorAxis(xyz...); });
        ExpectTriple(ellipse.normal, [&](auto&... xyz) { return read.Normal(xyz...); });
        double ratio = 0;
        RC_ASSERT(read.RadiusRatio(ratio) == kDataReturnCode_Ok);
        ExpectSame(ellipse.radiusRatio, ratio);
        ExpectRange(ellipse.start, ellipse.end);
    }

    void operator()(PolylineRecord const& polyline) const
    {
        auto const& read = As<IPolyLineData>();
        ExpectFlags(polyline);
        // A closed one repeats its first point, and gets one when it has none.
        std::vector<Triple> points = polyline.points;
        if (polyline.isClosed)
            points.push_back(points.empty() ? Triple{} : points.front());
        std::uint32_t count = 0;
        RC_ASSERT(read.PointCount(count) == kDataReturnCode_Ok);
        RC_ASSERT(count == points.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            ExpectTriple(points[i], [&](auto&... xyz) { return read.Point(static_cast<int>(i), xyz...); });
        bool hasVectors = false;
        RC_ASSERT(read.HasVectors(hasVectors) == kDataReturnCode_Ok);
        RC_ASSERT(hasVectors == polyline.vectors.has_value());
        for (std::size_t i = 0; hasVectors && i < polyline.vectors->size(); ++i)
            ExpectTriple((*polyline.vectors)[i],
                         [&](auto&... xyz) { return read.VectorAt(static_cast<int>(i), xyz...); });
    }

    void operator()(CompositeRecord const& composite) const
    {
        auto const& read = As<ICompositeCurveData>();
        ExpectFlags(composite);
        std::uint32_t count = 0;
        RC_ASSERT(read.SegmentCount(count) == kDataReturnCode_Ok);
        RC_ASSERT(count == composite.segments.size());
        for (std::uint32_t i = 0; i < count; ++i)
        {
            CompositeSegment const& segment = composite.segments[i];
            auto const index = static_cast<int>(i);
            ICurveData* curve = nullptr;
            RC_ASSERT(read.Segment(index, curve) == kDataReturnCode_Ok);
            ExpectSame(*segment.curve, curve);
            bool flag = false;
            RC_ASSERT(read.SegmentFlag(index, flag) == kDataReturnCode_Ok);
            RC_ASSERT(flag == (segment.flag != 0));
            double start = 0;
            double end = 0;
            RC_ASSERT(read.SegmentInterval(index, start, end) == kDataReturnCode_Ok);
            ExpectSame(segment.start, start);
            ExpectSame(segment.end, end);
            std::uint32_t value = 0;
            RC_ASSERT(read.SegmentValue(index, value) == kDataReturnCode_Ok);
            RC_ASSERT(value == segment.value);
        }
    }

    void operator()(NurbsRecord const& nurbs) const
    {
        auto const& read = As<INurbsCurveData>();
        ExpectFlags(nurbs);
        std::uint32_t number = 0;
        RC_ASSERT(read.Degree(number) == kDataReturnCode_Ok);
        RC_ASSERT(number == nurbs.degree);
        RC_ASSERT(read.KnotCount(number) == kDataReturnCode_Ok);
        RC_ASSERT(number == nurbs.knots.size());
        for (std::size_t i = 0; i < nurbs.knots.size(); ++i)
        {
            double knot = 0;
            RC_ASSERT(read.Knot(static_cast<int>(i), knot) == kDataReturnCode_Ok);
            ExpectSame(nurbs.knots[i], knot);
        }
        bool isRational = false;
        RC_ASSERT(read.IsRational(isRational) == kDataReturnCode_Ok);
        RC_ASSERT(isRational == nurbs.weights.has_value());
        RC_ASSERT(read.ControlPointCount(number) == kDataReturnCode_Ok);
        RC_ASSERT(number == nurbs.controlPoints.size());
        for (std::size_t i = 0; i < nurbs.controlPoints.size(); ++i)
        {
            double weight = 0;
            ExpectTriple(nurbs.controlPoints[i],
                         [&](auto&... xyz) { return read.ControlPoint(static_cast<int>(i), xyz..., weight); });
            ExpectSame(isRational ? (*nurbs.weights)[i] : 1.0, weight);
        }
        ExpectRange(nurbs.start, nurbs.end);
    }

private:
    template <class Data>
    Data& As() const
    {
        auto* const data = dynamic_cast<Data*>(m_read);
        RC_ASSERT(data != nullptr);
        return *data;
    }

    template <class Getter>
    void ExpectTriple(Triple const& written, Getter getter) const
    {
        double x = 0;
        double y = 0;
        double z = 0;
        RC_ASSERT(getter(x, y, z) == kDataReturnCode_Ok);
        ExpectSame(written[0], x);
        ExpectSame(written[1], y);
        ExpectSame(written[2], z);
    }

    void ExpectRange(double start, double end) const
    {
        Interval range(0, 0);
        RC_ASSERT(m_read->ParameterRange(range) == kDataReturnCode_Ok);
        ExpectSame(start, range.Lower());
        ExpectSame(end, range.Upper());
    }

    template <class Record>
    void ExpectFlags(Record const& record) const
    {
        bool flag = false;
        RC_ASSERT(m_read->IsClosed(flag) == kDataReturnCode_Ok);
        RC_ASSERT(flag == record.isClosed);
        RC_ASSERT(m_read->IsPeriodic(flag) == kDataReturnCode_Ok);
        RC_ASSERT(flag == record.isPeriodic);
    }

    ICurveData* m_read;
};

void ExpectSame(CurveRecord const& written, ICurveData* read)
{
    RC_ASSERT(read != nullptr);
    std::visit(Comparison(read), written.curve);
}

TEST(CurveRecord, CurvesOfEveryKindAreReadAsTheyWereWritten)
{
    EXPECT_TRUE(rc::check(
        []
        {
            bool const isGeometryInfo = AnyFlag();
            std::map<std::string, CurveRecord> written;
            for (char const* const id : {"a", "b", "c"})
                written[id] = AnyCurve(0);
            TestScene scene(StoreScene(isGeometryInfo ? kGeometryInfo : kMeshInfo, {}, {"a", "b", "c"}));
            MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()),
                                   isGeometryInfo ? MeshStoreLayout::kGeometryInfo : MeshStoreLayout::kMeshInfo);
            for (auto const& [id, curve] : written)
                writer.Curve(UTF8String(id.c_str()), curve);
            writer.Finish();
            scene.Begin();
            for (auto const& [id, curve] : written)
                ExpectSame(curve, scene.Get<ICurve>(id.c_str()).CurveDataAt(0));
        }));
}

TEST(CurveRecord, ListsThatDoNotAgreeAndSegmentsWithoutIdOrCurveAreRefused)
{
    TempFolder folder;
    MeshStoreWriter writer(folder.PathOf("s"), MeshStoreLayout::kMeshInfo);
    auto const curve = std::make_shared<CurveRecord>(CurveRecord{RayRecord{}});
    EXPECT_THROW(writer.Curve("c", {PolylineRecord{false, false, {Triple{}}, std::vector<Triple>(2)}}),
                 GeneralException);
    EXPECT_THROW(writer.Curve("c", {NurbsRecord{false, false, {}, {Triple{}}, std::vector<double>(), 1, 0, 1}}),
                 GeneralException);
    EXPECT_THROW(writer.Curve("c", {CompositeRecord{false, false, {{"", curve, 0, 0, 0, 0}}}}), GeneralException);
    EXPECT_THROW(writer.Curve("c", {CompositeRecord{false, false, {{"s", nullptr, 0, 0, 0, 0}}}}), GeneralException);
    EXPECT_THROW(writer.Curve("", *curve), GeneralException);
}

}  // namespace

}  // namespace KVR::Test
