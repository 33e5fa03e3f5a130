#include "scene/CurvePoints.h"

#include <GeomAdaptor_Curve.hxx>
#include <Geom_Curve.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <algorithm>

#include "framework/api/ICurve.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/gmk_array.h"
#include "framework/kernel/tessellation/CurveLine.h"
#include "scene/geometry/CurveDataLines.h"

namespace KVR
{

namespace
{

// With `isTurned` the line runs from the curve's end to its start.
bool AddCurve(SceneLines& lines, Adaptor3d_Curve const& curve, CurveTolerance const& tolerance, bool isTurned)
{
    std::vector<double> points;
    if (!PointsOn(curve, tolerance, points))
        return false;
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
    MemoryWatch const watch;
    try
    {
        double const first = std::min(kernelCurve->First(), kernelCurve->Last());
        double const last = std::max(kernelCurve->First(), kernelCurve->Last());
        return AddCurve(lines, GeomAdaptor_Curve(kernelCurve->Geometry(), first, last), tolerance,
                        kernelCurve->First() > kernelCurve->Last());
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
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

SceneLines CurvePoints::OfEdges(TopoDS_Shape const& shape, CurveTolerance const& tolerance, std::size_t most)
{
    SceneLines lines;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent() && lines.points.size() / 3 <= most; ++i)
        lines.missing += AddEdge(lines, edges(i), tolerance) ? 0 : 1;
    return lines;
}

bool CurvePoints::AddEdge(SceneLines& lines, TopoDS_Shape const& shape, CurveTolerance const& tolerance)
{
    std::vector<double> points;
    if (shape.IsNull() || shape.ShapeType() != TopAbs_EDGE || !PointsOn(TopoDS::Edge(shape), tolerance, points))
        return false;
    lines.Add(points);
    return true;
}

}  // namespace KVR
