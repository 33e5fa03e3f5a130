#include "framework/api/ICurveData.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "framework/api/CurveDataVisitor.h"

namespace
{

using namespace KVR;

constexpr DataReturnCodeEnum kNone = kDataReturnCode_NotAvailable;

class FakeStraightData : public IStraightData
{
public:
    explicit FakeStraightData(IBaseData const* parent = nullptr) : IStraightData(parent) {}
    DataReturnCodeEnum RootPoint(double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum Direction(double&, double&, double&) const override { return kNone; }
};

class FakeRayData : public IRayData
{
public:
    explicit FakeRayData(IBaseData const* parent = nullptr) : IRayData(parent) {}
    DataReturnCodeEnum Origin(double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum Direction(double&, double&, double&) const override { return kNone; }
};

class FakeEllipseData : public IEllipseData
{
public:
    explicit FakeEllipseData(IBaseData const* parent = nullptr) : IEllipseData(parent) {}
    DataReturnCodeEnum Center(double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum MajorAxis(double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum Normal(double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum RadiusRatio(double&) const override { return kNone; }
};

class FakePolyLineData : public IPolyLineData
{
public:
    explicit FakePolyLineData(IBaseData const* parent = nullptr) : IPolyLineData(parent) {}
    DataReturnCodeEnum HasVectors(bool&) const override { return kNone; }
    DataReturnCodeEnum PointCount(std::uint32_t&) const override { return kNone; }
    DataReturnCodeEnum Point(int, double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum VectorAt(int, double&, double&, double&) const override { return kNone; }
};

class FakeCompositeCurveData : public ICompositeCurveData
{
public:
    explicit FakeCompositeCurveData(IBaseData const* parent = nullptr) : ICompositeCurveData(parent) {}
    DataReturnCodeEnum SegmentCount(std::uint32_t&) const override { return kNone; }
    DataReturnCodeEnum Segment(int, ICurveData*&) const override { return kNone; }
    DataReturnCodeEnum SegmentFlag(int, bool&) const override { return kNone; }
    DataReturnCodeEnum SegmentInterval(int, double&, double&) const override { return kNone; }
    DataReturnCodeEnum SegmentValue(int, std::uint32_t&) const override { return kNone; }
};

class FakeNurbsCurveData : public INurbsCurveData
{
public:
    explicit FakeNurbsCurveData(IBaseData const* parent = nullptr) : INurbsCurveData(parent) {}
    DataReturnCodeEnum Degree(std::uint32_t&) const override { return kNone; }
    DataReturnCodeEnum KnotCount(std::uint32_t&) const override { return kNone; }
    DataReturnCodeEnum ControlPointCount(std::uint32_t&) const override { return kNone; }
    DataReturnCodeEnum IsRational(bool&) const override { return kNone; }
    DataReturnCodeEnum Knot(int, double&) const override { return kNone; }
    DataReturnCodeEnum ControlPoint(int, double&, double&, double&, double&) const override { return kNone; }
    DataReturnCodeEnum FitTolerance(double&) const override { return kNone; }
    DataReturnCodeEnum ParameterShift(double&) const override { return kNone; }
};

class Noter : public CurveDataVisitor
{
public:
    std::string visited;
    IBaseData const* data = nullptr;

    void Visit(ICompositeCurveData* d) override { Note("Composite", d); }
    void Visit(INurbsCurveData* d) override { Note("Nurbs", d); }
    void Visit(IEllipseData* d) override { Note("Ellipse", d); }
    void Visit(IPolyLineData* d) override { Note("PolyLine", d); }
    void Visit(IRayData* d) override { Note("Ray", d); }
    void Visit(IStraightData* d) override { Note("Straight", d); }
    using CurveDataVisitor::Visit;

private:
    void Note(char const* kind, IBaseData const* d)
    {
        visited += kind;
        data = d;
    }
};

template <class Fake>
class CurveDataOf : public testing::Test
{
};

using Fakes = testing::Types<FakeCompositeCurveData, FakeNurbsCurveData, FakeEllipseData, FakePolyLineData, FakeRayData,
                             FakeStraightData>;
TYPED_TEST_SUITE(CurveDataOf, Fakes);

template <class Fake>
std::string NameOf()
{
    if constexpr (std::is_same_v<Fake, FakeCompositeCurveData>)
        return "Composite";
    else if constexpr (std::is_same_v<Fake, FakeNurbsCurveData>)
        return "Nurbs";
    else if constexpr (std::is_same_v<Fake, FakeEllipseData>)
        return "Ellipse";
    else if constexpr (std::is_same_v<Fake, FakePolyLineData>)
        return "PolyLine";
    else if constexpr (std::is_same_v<Fake, FakeRayData>)
        return "Ray";
    else
        return "Straight";
}

TYPED_TEST(CurveDataOf, AcceptVisitorCallsTheOverloadOfTheInterfaceOnce)
{
    TypeParam fake;
    Noter noter;
    EXPECT_EQ(static_cast<ICurveData&>(fake).AcceptVisitor(&noter), kDataReturnCode_Ok);
    EXPECT_EQ(noter.visited, NameOf<TypeParam>());
    EXPECT_EQ(noter.data, &fake);
}

TYPED_TEST(CurveDataOf, AVisitorThatOverridesNothingIsVisitedAllTheSame)
{
    TypeParam fake;
    CurveDataVisitor visitor;
    EXPECT_EQ(fake.AcceptVisitor(&visitor), kDataReturnCode_Ok);
}

TYPED_TEST(CurveDataOf, ANullVisitorIsABadArgument)
{
    TypeParam fake;
    EXPECT_EQ(fake.AcceptVisitor(nullptr), kDataReturnCode_BadArgument);
}

TYPED_TEST(CurveDataOf, HasNoGeometryOfItsOwnAndLeavesTheOutputsAlone)
{
    TypeParam const fake;
    ICurveData const& data = fake;
    Interval range(7.0, 8.0);
    bool flag = true;
    Position point(1.0, 2.0, 3.0);
    double parameter = 9.0;
    EXPECT_NE(data.ParameterRange(range), 0);
    EXPECT_NE(data.IsClosed(flag), 0);
    EXPECT_NE(data.IsPeriodic(flag), 0);
    EXPECT_NE(data.StartPoint_ex(point), 0);
    EXPECT_NE(data.EndPoint_ex(point), 0);
    EXPECT_NE(data.Evaluate_ex(0.5, point), 0);
    EXPECT_NE(data.Param_ex(Position(), parameter), 0);
    EXPECT_EQ(range.Lower(), 7.0);
    EXPECT_EQ(range.Upper(), 8.0);
    EXPECT_TRUE(flag);
    EXPECT_EQ(point.X(), 1.0);
    EXPECT_EQ(point.Y(), 2.0);
    EXPECT_EQ(point.Z(), 3.0);
    EXPECT_EQ(parameter, 9.0);
}

TYPED_TEST(CurveDataOf, HasAnEmptyIdAndNameAndLeavesTheColorAlone)
{
    TypeParam const fake;
    UTF8String id("before");
    UTF16String name(L"before");
    double red = 0.25;
    double green = 0.5;
    double blue = 0.75;
    EXPECT_EQ(fake.DataId(id, name), kDataReturnCode_Ok);
    EXPECT_TRUE(id.IsEmpty());
    EXPECT_TRUE(name.IsEmpty());
    EXPECT_EQ(fake.EntityColor(red, green, blue), kDataReturnCode_Ok);
    EXPECT_EQ(red, 0.25);
    EXPECT_EQ(green, 0.5);
    EXPECT_EQ(blue, 0.75);
}

class NamedData : public FakeStraightData
{
public:
    DataReturnCodeEnum DataId(UTF8String& id, UTF16String& name) const override
    {
        id = "parent";
        name = L"Parent";
        return kDataReturnCode_Ok;
    }
    DataReturnCodeEnum EntityColor(double& red, double& green, double& blue) const override
    {
        red = 1.0;
        green = 0.5;
        blue = 0.0;
        return kDataReturnCode_Ok;
    }
};

TYPED_TEST(CurveDataOf, AnswersIdNameAndColorOfItsParent)
{
    NamedData const parent;
    TypeParam const fake(&parent);
    UTF8String id;
    UTF16String name;
    double red = 0.25;
    double green = 0.25;
    double blue = 0.25;
    EXPECT_EQ(fake.DataId(id, name), kDataReturnCode_Ok);
    EXPECT_EQ(id, UTF8String("parent"));
    EXPECT_EQ(name, UTF16String(L"Parent"));
    EXPECT_EQ(fake.EntityColor(red, green, blue), kDataReturnCode_Ok);
    EXPECT_EQ(red, 1.0);
    EXPECT_EQ(green, 0.5);
    EXPECT_EQ(blue, 0.0);
}

TYPED_TEST(CurveDataOf, IsDestroyedThroughAnyBaseAndNeverCopied)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<IBaseData>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IDataResourceManager>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ICurveData>);
    EXPECT_FALSE(std::is_copy_constructible_v<TypeParam>);
    EXPECT_TRUE((std::is_base_of_v<IDataResourceManager, TypeParam>));
}

TEST(IPolyLineData, DoesNothingWhenAskedWhetherItIsPlanarOrMeetsItself)
{
    FakePolyLineData const data;
    Matrix3d placement;
    placement.SetElement(0, 3, 2.5);
    EXPECT_EQ(data.IsPlanar_ex(placement), kDataReturnCode_Ok);
    EXPECT_EQ(placement.Element(0, 3), 2.5);
    EXPECT_EQ(data.IsSelfIntersect_ex(), kDataReturnCode_Ok);
}

TEST(INurbsCurveData, DoesNothingWhenAskedForItsContinuityOrToTurnRound)
{
    FakeNurbsCurveData data;
    int order = 7;
    EXPECT_EQ(data.CurveContinuity(order), kDataReturnCode_Ok);
    EXPECT_EQ(order, 7);
    EXPECT_EQ(data.Negate_ex(), kDataReturnCode_Ok);
}

}  // namespace
