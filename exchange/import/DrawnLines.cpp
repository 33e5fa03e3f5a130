#include "exchange/import/DrawnLines.h"

#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Geom_Circle.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Precision.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <variant>

#include "framework/kernel/tessellation/CurveLine.h"
#include "framework/kernel/tessellation/EdgeCorners.h"

namespace KVR
{

namespace
{

Authoring::Triple TripleOf(gp_XYZ const& value)
{
    // Adding 0 turns -0 into 0.
    return {value.X() + 0.0, value.Y() + 0.0, value.Z() + 0.0};
}

constexpr double kTurn = 2.0 * std::numbers::pi;

std::optional<Authoring::EllipseRecord> WholeCircle(TopoDS_Edge const& edge)
{
    double first = 0.0;
    double last = 0.0;
    Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
    if (Handle(Geom_TrimmedCurve) const trimmed = Handle(Geom_TrimmedCurve)::DownCast(curve); !trimmed.IsNull())
        curve = trimmed->BasisCurve();
    Handle(Geom_Circle) const circle = Handle(Geom_Circle)::DownCast(curve);
    if (circle.IsNull() || std::abs(last - first - kTurn) > Precision::PConfusion())
        return {};
    gp_Ax2 const& axes = circle->Position();
    Authoring::EllipseRecord whole;
    whole.isClosed = true;
    whole.isPeriodic = true;
    whole.center = TripleOf(axes.Location().XYZ());
    whole.majorAxis = TripleOf(circle->Radius() * axes.XDirection().XYZ());
    whole.normal = TripleOf(axes.Direction().XYZ());
    whole.end = kTurn;
    return whole;
}

// Joins edges that follow one another.
class Lines
{
public:
    explicit Lines(TopoDS_Shape const& drawing)
    {
        for (TopExp_Explorer edge(drawing, TopAbs_EDGE); edge.More(); edge.Next())
            Add(TopoDS::Edge(edge.Current()));
    }

    std::vector<Authoring::CurveRecord> lines;

private:
    void Add(TopoDS_Edge const& edge)
    {
        if (BRep_Tool::Degenerated(edge))
            return;
        if (std::optional<Authoring::EllipseRecord> circle = WholeCircle(edge))
        {
            lines.push_back({*circle});
            return;
        }
        std::vector<Authoring::Triple> points;
        for (gp_Pnt const& corner : CornersOf(edge))
            points.push_back(TripleOf(corner.XYZ()));
        if (points.empty())
        {
            std::vector<double> curve;
            if (!PointsOn(edge, CurveTolerance(), curve))
                return;
            for (std::size_t i = 0; i < curve.size(); i += 3)
                points.push_back(TripleOf({curve[i], curve[i + 1], curve[i + 2]}));
        }
        if (edge.Orientation() == TopAbs_REVERSED)
            std::reverse(points.begin(), points.end());
        if (points.size() < 2)
            return;
        auto* const before = lines.empty() ? nullptr : std::get_if<Authoring::PolylineRecord>(&lines.back().curve);
        if (before && before->points.back() == points.front())
        {
            before->points.insert(before->points.end(), points.begin() + 1, points.end());
            return;
        }
        Authoring::PolylineRecord line;
        line.points = std::move(points);
        lines.push_back({std::move(line)});
    }
};

}  // namespace

std::vector<Authoring::CurveRecord> DrawnLines(TopoDS_Shape const& drawing)
{
    return std::move(Lines(drawing).lines);
}

Bnd_Box BoxOf(Authoring::CurveRecord const& line)
{
    Bnd_Box box;
    auto const add = [&](Authoring::Triple const& point) { box.Add(gp_Pnt(point[0], point[1], point[2])); };
    if (auto const* const circle = std::get_if<Authoring::EllipseRecord>(&line.curve))
    {
        double const radius = std::hypot(circle->majorAxis[0], circle->majorAxis[1], circle->majorAxis[2]);
        for (double const sign : {-1.0, 1.0})
        {
            Authoring::Triple corner = circle->center;
            for (std::size_t axis = 0; axis < 3; ++axis)
                corner[axis] += sign * radius * std::sqrt(std::max(0.0, 1.0 - std::pow(circle->normal[axis], 2)));
            add(corner);
        }
    }
    if (auto const* const polyline = std::get_if<Authoring::PolylineRecord>(&line.curve))
        std::for_each(polyline->points.begin(), polyline->points.end(), add);
    return box;
}

}  // namespace KVR
