#include "scene/CurveShape.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRep_Builder.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Wire.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Elips.hxx>
#include <optional>
#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurve.h"
#include "framework/api/ICurveData.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/gmk_array.h"
#include "scene/geometry/CurveDataFacts.h"

namespace KVR
{

namespace
{

constexpr double kTurn = 6.283185307179586;
constexpr double kQuarter = kTurn / 4.0;

bool IsFinite(gp_XYZ const& triple)
{
    return std::isfinite(triple.X()) && std::isfinite(triple.Y()) && std::isfinite(triple.Z());
}

// A curve runs from the larger parameter to the smaller one when its range says so.
template <class... Arguments>
TopoDS_Shape EdgeOver(double start, double end, Arguments const&... curve)
{
    BRepBuilderAPI_MakeEdge edge(curve..., std::min(start, end), std::max(start, end));
    if (!edge.IsDone())
        return {};
    TopoDS_Shape made = edge.Edge();
    return start > end ? made.Reversed() : made;
}

TopoDS_Shape SegmentBetween(gp_Pnt const& start, gp_Pnt const& end)
{
    if (!IsFinite(start.XYZ()) || !IsFinite(end.XYZ()))
        return {};
    BRepBuilderAPI_MakeEdge edge(start, end);
    return edge.IsDone() ? TopoDS_Shape(edge.Edge()) : TopoDS_Shape();
}

TopoDS_Shape EllipseEdge(IEllipseData const& data)
{
    gp_XYZ center;
    gp_XYZ major;
    gp_XYZ normal;
    double ratio = 0.0;
    std::optional<Interval> const range = CurveDataFacts::RangeOf(data);
    if (!range || data.Center(center.ChangeCoord(1), center.ChangeCoord(2), center.ChangeCoord(3)) != 0 ||
        data.MajorAxis(major.ChangeCoord(1), major.ChangeCoord(2), major.ChangeCoord(3)) != 0 ||
        data.Normal(normal.ChangeCoord(1), normal.ChangeCoord(2), normal.ChangeCoord(3)) != 0 ||
        data.RadiusRatio(ratio) != 0)
        return {};
    if (!IsFinite(center) || !IsFinite(major) || !IsFinite(normal) || !std::isfinite(ratio) || ratio == 0.0)
        return {};
    double start = range->Lower();
    double end = std::clamp(range->Upper(), start - kTurn, start + kTurn);
    double const radius = major.Modulus();
    gp_Dir const up(ratio > 0.0 ? normal : normal.Reversed());
    gp_Dir const along(major);
    double const other = radius * std::abs(ratio);
    if (other == radius)
        return EdgeOver(start, end, gp_Circ(gp_Ax2(gp_Pnt(center), up, along), radius));
    if (other < radius)
        return EdgeOver(start, end, gp_Elips(gp_Ax2(gp_Pnt(center), up, along), radius, other));
    // The larger radius is across, and there the parameter begins.
    start -= kQuarter;
    end -= kQuarter;
    return EdgeOver(start, end, gp_Elips(gp_Ax2(gp_Pnt(center), up, up.Crossed(along)), other, radius));
}

TopoDS_Shape PolylineEdge(IPolyLineData const& data)
{
    std::uint32_t count = 0;
    if (data.PointCount(count) != 0)
        return {};
    std::vector<gp_Pnt> points;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        gp_Pnt point;
        if (data.Point(static_cast<int>(i), point.ChangeCoord().ChangeCoord(1), point.ChangeCoord().ChangeCoord(2),
                       point.ChangeCoord().ChangeCoord(3)) != 0 ||
            !IsFinite(point.XYZ()))
            return {};
        if (points.empty() || points.back().Distance(point) > Precision::Confusion())
            points.push_back(point);
    }
    if (points.size() < 2)
        return {};
    if (points.size() == 2)
        return SegmentBetween(points.front(), points.back());
    int const size = static_cast<int>(points.size());
    TColgp_Array1OfPnt const poles(points.front(), 1, size);
    TColStd_Array1OfReal knots(1, size);
    TColStd_Array1OfInteger multiplicities(1, size);
    for (int i = 1; i <= size; ++i)
    {
        knots(i) = i - 1;
        multiplicities(i) = i == 1 || i == size ? 2 : 1;
    }
    opencascade::handle<Geom_Curve> const curve = new Geom_BSplineCurve(poles, knots, multiplicities, 1);
    return EdgeOver(0.0, size - 1.0, curve);
}

TopoDS_Shape NurbsEdge(INurbsCurveData const& data)
{
    std::uint32_t degree = 0;
    std::uint32_t count = 0;
    bool isRational = false;
    std::optional<Interval> const range = CurveDataFacts::RangeOf(data);
    if (!range || data.Degree(degree) != 0 || data.ControlPointCount(count) != 0 || data.IsRational(isRational) != 0 ||
        degree < 1 || degree > static_cast<std::uint32_t>(Geom_BSplineCurve::MaxDegree()) || count <= degree)
        return {};
    std::vector<double> const knots = CurveDataFacts::KnotsOf(data, degree, count);
    if (knots.empty())
        return {};
    TColgp_Array1OfPnt poles(1, static_cast<int>(count));
    TColStd_Array1OfReal weights(1, static_cast<int>(count));
    for (int i = 1; i <= static_cast<int>(count); ++i)
    {
        gp_XYZ pole;
        if (data.ControlPoint(i - 1, pole.ChangeCoord(1), pole.ChangeCoord(2), pole.ChangeCoord(3), weights(i)) != 0 ||
            !IsFinite(pole) || !std::isfinite(weights(i)))
            return {};
        poles(i) = gp_Pnt(pole);
    }
    std::vector<double> values;
    std::vector<int> times;
    for (double const knot : knots)
    {
        if (!values.empty() && knot == values.back())
        {
            ++times.back();
            continue;
        }
        values.push_back(knot);
        times.push_back(1);
    }
    if (values.size() < 2)
        return {};
    TColStd_Array1OfReal const distinct(values.front(), 1, static_cast<int>(values.size()));
    TColStd_Array1OfInteger const multiplicities(times.front(), 1, static_cast<int>(times.size()));
    opencascade::handle<Geom_Curve> const curve =
        isRational ? new Geom_BSplineCurve(poles, weights, distinct, multiplicities, static_cast<int>(degree))
                   : new Geom_BSplineCurve(poles, distinct, multiplicities, static_cast<int>(degree));
    double const first = curve->FirstParameter();
    double const last = curve->LastParameter();
    return EdgeOver(std::clamp(range->Lower(), first, last), std::clamp(range->Upper(), first, last), curve);
}

class EdgeMaker final : public CurveDataVisitor
{
public:
    void Make(ICurveData* data)
    {
        std::size_t const before = m_edges.size() + m_missing;
        if (data && m_depth <= kDeepestCurveNesting)
            data->AcceptVisitor(this);
        // Data of a kind that is not known here.
        if (m_edges.size() + m_missing == before)
            ++m_missing;
    }

    void MakeOfKernel(curve const* kernelCurve)
    {
        Add(
            [&]() -> TopoDS_Shape
            {
                if (!kernelCurve || kernelCurve->IsDestroyed() || Precision::IsInfinite(kernelCurve->First()) ||
                    Precision::IsInfinite(kernelCurve->Last()))
                    return {};
                return EdgeOver(kernelCurve->First(), kernelCurve->Last(), kernelCurve->Geometry());
            });
    }

    void Visit(IStraightData* data) override { AddStraight(*data); }
    void Visit(IRayData* data) override { AddStraight(*data); }
    void Visit(IEllipseData* data) override
    {
        Add([&] { return EllipseEdge(*data); });
    }
    void Visit(IPolyLineData* data) override
    {
        Add([&] { return PolylineEdge(*data); });
    }
    void Visit(INurbsCurveData* data) override
    {
        Add([&] { return NurbsEdge(*data); });
    }
    void Visit(ICompositeCurveData* data) override
    {
        std::uint32_t count = 0;
        if (data->SegmentCount(count) != 0)
            return;
        ++m_depth;
        std::uint32_t place = 0;
        for (; place < count; ++place)
        {
            ICurveData* segment = nullptr;
            if (!CurveDataFacts::TakeSegment(*data, place, segment))
                break;
            Make(segment);
        }
        m_missing += count - place;
        --m_depth;
    }

    TopoDS_Shape Shape() const
    {
        if (m_edges.empty())
            return {};
        return m_edges.size() == 1 ? m_edges.front() : Joined();
    }
    unsigned long long Missing() const noexcept { return m_missing; }

private:
    template <class Data>
    void AddStraight(Data const& data)
    {
        Add(
            [&]() -> TopoDS_Shape
            {
                Position start;
                Position end;
                if (data.StartPoint_ex(start) != kDataReturnCode_Ok || data.EndPoint_ex(end) != kDataReturnCode_Ok)
                    return {};
                return SegmentBetween(gp_Pnt(start.X(), start.Y(), start.Z()), gp_Pnt(end.X(), end.Y(), end.Z()));
            });
    }

    template <class Made>
    void Add(Made make)
    {
        TopoDS_Shape edge;
        MemoryWatch const watch;
        try
        {
            edge = make();
        }
        catch (Standard_Failure const& failure)
        {
            watch.Check(failure);
            edge.Nullify();
        }
        if (edge.IsNull())
            ++m_missing;
        else
            m_edges.push_back(edge);
    }

    TopoDS_Shape Joined() const
    {
        BRepBuilderAPI_MakeWire wire;
        for (TopoDS_Shape const& edge : m_edges)
        {
            wire.Add(static_cast<TopoDS_Edge const&>(edge));
            if (!wire.IsDone())
                break;
        }
        if (wire.IsDone())
            return wire.Wire();
        TopoDS_Compound compound;
        BRep_Builder builder;
        builder.MakeCompound(compound);
        for (TopoDS_Shape const& edge : m_edges)
            builder.Add(compound, edge);
        return compound;
    }

    std::vector<TopoDS_Shape> m_edges;
    unsigned long long m_missing = 0;
    unsigned m_depth = 0;
};

}  // namespace

unsigned long long MakeCurveShape(ICurve const& curve, TopoDS_Shape& shape)
{
    EdgeMaker maker;
    bool isOfKernel = false;
    for (auto const* const kernelCurve : curve.KernelCurves())
    {
        isOfKernel = true;
        maker.MakeOfKernel(kernelCurve);
    }
    for (unsigned long long i = 0; i < curve.CurveDataCount(); ++i)
    {
        // A curve of the kernel alone has one piece of data, null.
        if (ICurveData* const data = curve.CurveDataAt(i); data || !isOfKernel)
            maker.Make(data);
    }
    shape = maker.Shape();
    return maker.Missing();
}

}  // namespace KVR
