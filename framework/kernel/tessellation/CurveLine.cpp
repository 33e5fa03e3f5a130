#include "framework/kernel/tessellation/CurveLine.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <Geom_Curve.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TopoDS_Edge.hxx>
#include <gp_Circ.hxx>
#include <gp_Elips.hxx>

#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/tessellation/CurveSampler.h"

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

}  // namespace

bool PointsOn(Adaptor3d_Curve const& curve, CurveTolerance const& tolerance, std::vector<double>& points)
{
    AdaptorSource const source(curve);
    CurveSampler sampler(source, tolerance);
    if (!Follow(sampler, curve))
        return false;
    points = sampler.Points();
    return true;
}

bool PointsOn(TopoDS_Edge const& edge, CurveTolerance const& tolerance, std::vector<double>& points)
{
    MemoryWatch const watch;
    try
    {
        double first = 0.0;
        double last = 0.0;
        if (BRep_Tool::Degenerated(edge) || BRep_Tool::Curve(edge, first, last).IsNull())
            return false;
        return PointsOn(BRepAdaptor_Curve(edge), tolerance, points);
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        // What Open CASCADE cannot follow has no line.
        return false;
    }
}

}  // namespace KVR
