#include "exchange/import/DrawnLines.h"

#include <BRep_Tool.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <algorithm>

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

// Joins edges that follow one another.
class Polylines
{
public:
    explicit Polylines(TopoDS_Shape const& drawing)
    {
        for (TopExp_Explorer edge(drawing, TopAbs_EDGE); edge.More(); edge.Next())
            Add(TopoDS::Edge(edge.Current()));
    }

    std::vector<Authoring::PolylineRecord> lines;

private:
    void Add(TopoDS_Edge const& edge)
    {
        if (BRep_Tool::Degenerated(edge))
            return;
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
        if (!lines.empty() && lines.back().points.back() == points.front())
            lines.back().points.insert(lines.back().points.end(), points.begin() + 1, points.end());
        else
        {
            lines.emplace_back();
            lines.back().points = std::move(points);
        }
    }
};

}  // namespace

std::vector<Authoring::PolylineRecord> DrawnLines(TopoDS_Shape const& drawing)
{
    return std::move(Polylines(drawing).lines);
}

}  // namespace KVR
