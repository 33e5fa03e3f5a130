#include "scene/CurvePoints.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <Geom_Curve.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Elips.hxx>

#include "framework/api/ICurve.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/gmk_array.h"
#include "scene/geometry/CurveDataLines.h"
#include "scene/geometry/CurveSampler.h"

namespace KVR
{

namespace
{

// What is assumed of a curve that tells no degree of its own.
constexpr unsigned kDegreeOfConic = 7;
constexpr unsigned kDegreeOfAny = 15;

class AdaptorSource final : public CurveSource
{
public:
    explicit AdaptorSource(Adaptor3d_Curve const& curve) : m_curve(curve) {}

    bool PointAt(double parameter, Point& point) const override
    {
        gp_Pnt const found = m_curve.Value(parameter);
        point = {found.X(), found.Y(), found.Z()};
        return true;
    }

private:
    Adaptor3d_Curve const& m_curve;
};

unsigned DegreeOf(Adaptor3d_Curve const& curve)
{
    switch (curve.GetType())
    {
        case GeomAbs_Line:
            return 1;
        case GeomAbs_BezierCurve:
        case GeomAbs_BSplineCurve:
            return static_cast<unsigned>(curve.Degree());
        case GeomAbs_Hyperbola:
        case GeomAbs_Parabola:
            return kDegreeOfConic;
        default:
            return kDegreeOfAny;
    }
}

bool Follow(CurveSampler& sampler, Adaptor3d_Curve const& curve)
{
    double const first = curve.FirstParameter();
    double const last = curve.LastParameter();
    if (!(first < last) || Precision::IsInfinite(first) || Precision::IsInfinite(last))
        return false;
    if (curve.GetType() == GeomAbs_Circle)
        return sampler.Turning(first, last, curve.Circle().Radius());
    if (curve.GetType() == GeomAbs_Ellipse)
        return sampler.Turning(first, last, curve.Ellipse().MajorRadius());
    if (curve.GetType() == GeomAbs_Line)
        return sampler.Straight({first, last});
    TColStd_Array1OfReal ends(1, curve.NbIntervals(GeomAbs_CN) + 1);
    curve.Intervals(ends, GeomAbs_CN);
    return sampler.Smooth({ends.begin(), ends.end()}, DegreeOf(curve));
}

// With `isTurned` the line runs from the curve's end to its start.
bool AddCurve(SceneLines& lines, Adaptor3d_Curve const& curve, CurveTolerance const& tolerance, bool isTurned)
{
    AdaptorSource const source(curve);
    CurveSampler sampler(source, tolerance);
    if (!Follow(sampler, curve))
        return false;
    std::vector<double> points = sampler.Points();
    if (isTurned)
    {
        std::reverse(points.begin(), points.end());
        for (std::size_t i = 0; i < points.size(); i += 3)
            std::swap(points[i], points[i + 2]);
    }
    lines.Add(points);
    return true;
}

bool AddKernelCurve(SceneLines& lines, curve const* kernelCurve, CurveTolerance const& tolerance)
{
    if (!kernelCurve || kernelCurve->IsDestroyed() || kernelCurve->Geometry().IsNull())
        return false;
    try
    {
        double const first = std::min(kernelCurve->First(), kernelCurve->Last());
        double const last = std::max(kernelCurve->First(), kernelCurve->Last());
        return AddCurve(lines, GeomAdaptor_Curve(kernelCurve->Geometry(), first, last), tolerance,
                        kernelCurve->First() > kernelCurve->Last());
    }
    catch (Standard_Failure const&)
    {
        // What Open CASCADE cannot follow has no line.
        return false;
    }
}

}  // namespace

std::span<double const> SceneLines::At(std::size_t place) const
{
    std::size_t const first = place == 0 ? 0 : ends[place - 1];
    return std::span(points).subspan(3 * first, 3 * (ends[place] - first));
}

void SceneLines::Add(std::span<double const> line)
{
    points.insert(points.end(), line.begin(), line.end());
    ends.push_back(points.size() / 3);
}

SceneLines CurvePoints::Of(ICurve const& curve, CurveTolerance const& tolerance)
{
    SceneLines lines;
    GMK::gmk_array<KVR::curve*> const kernelCurves = curve.KernelCurves();
    bool const isOfKernel = !kernelCurves.empty();
    for (unsigned long long i = 0; i < curve.CurveDataCount(); ++i)
    {
        ICurveData* const data = curve.CurveDataAt(i);
        if (data)
            CurveDataLines(lines, tolerance).Add(*data);
        else if (!isOfKernel)
            // A curve of the kernel alone has one piece of data, null.
            ++lines.missing;
    }
    for (KVR::curve const* const piece : kernelCurves)
        lines.missing += AddKernelCurve(lines, piece, tolerance) ? 0 : 1;
    return lines;
}

SceneLines CurvePoints::Of(ICurveData& data, CurveTolerance const& tolerance)
{
    SceneLines lines;
    CurveDataLines(lines, tolerance).Add(data);
    return lines;
}

SceneLines CurvePoints::Of(KVR::curve const& kernelCurve, CurveTolerance const& tolerance)
{
    SceneLines lines;
    lines.missing = AddKernelCurve(lines, &kernelCurve, tolerance) ? 0 : 1;
    return lines;
}

SceneLines CurvePoints::OfEdges(TopoDS_Shape const& shape, CurveTolerance const& tolerance)
{
    SceneLines lines;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i)
        lines.missing += AddEdge(lines, edges(i), tolerance) ? 0 : 1;
    return lines;
}

bool CurvePoints::AddEdge(SceneLines& lines, TopoDS_Shape const& shape, CurveTolerance const& tolerance)
{
    try
    {
        TopoDS_Edge const edge = TopoDS::Edge(shape);
        double first = 0.0;
        double last = 0.0;
        if (BRep_Tool::Degenerated(edge) || BRep_Tool::Curve(edge, first, last).IsNull())
            return false;
        return AddCurve(lines, BRepAdaptor_Curve(edge), tolerance, false);
    }
    catch (Standard_Failure const&)
    {
        // As above.
        return false;
    }
}

}  // namespace KVR
