#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <Geom_Curve.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <cmath>
#include <limits>

#include "exchange/export/TriangleGroups.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"

namespace KVR
{

namespace
{

// The angle between neighbouring pieces of a bent line, in radians.
constexpr double kAngle = 0.2;
// Points on a curve that tells no more of itself.
constexpr int kPieces = 128;

bool Put(std::vector<float>& line, double x, double y, double z)
{
    constexpr double kMost = std::numeric_limits<float>::max();
    if (!(std::abs(x) <= kMost && std::abs(y) <= kMost && std::abs(z) <= kMost))
        return false;
    line.insert(line.end(), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    return true;
}

void AddLine(Polylines& lines, std::vector<float> line)
{
    if (line.size() >= 6)
        lines.push_back(std::move(line));
}

void AddCurve(Polylines& lines, Adaptor3d_Curve const& curve)
{
    if (Precision::IsInfinite(curve.FirstParameter()) || Precision::IsInfinite(curve.LastParameter()))
        return;
    GCPnts_TangentialDeflection const points(curve, kAngle, 1e9);
    std::vector<float> line;
    for (int i = 1; i <= points.NbPoints(); ++i)
        if (!Put(line, points.Value(i).X(), points.Value(i).Y(), points.Value(i).Z()))
            return;
    AddLine(lines, std::move(line));
}

void AddData(Polylines& lines, ICurveData& data)
{
    std::vector<float> line;
    if (auto const* const polyline = dynamic_cast<IPolyLineData const*>(&data))
    {
        std::uint32_t count = 0;
        polyline->PointCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            if (polyline->Point(static_cast<int>(i), x, y, z) != kDataReturnCode_Ok || !Put(line, x, y, z))
                return;
        }
        AddLine(lines, std::move(line));
        return;
    }
    Interval range(0.0, 0.0);
    if (data.ParameterRange(range) != kDataReturnCode_Ok || !(range.Upper() - range.Lower() < 1e100))
        return;
    int const pieces = dynamic_cast<IStraightData const*>(&data) ? 1 : kPieces;
    for (int i = 0; i <= pieces; ++i)
    {
        Position point;
        if (data.Evaluate_ex(range.Lower() + (range.Upper() - range.Lower()) * i / pieces, point) !=
                kDataReturnCode_Ok ||
            !Put(line, point.X(), point.Y(), point.Z()))
            return;
    }
    AddLine(lines, std::move(line));
}

}  // namespace

Polylines EdgesOf(IBrep& body)
{
    Polylines lines;
    if (!body.Body())
        return lines;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(body.Body()->Shape(), TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i)
    {
        TopoDS_Edge const edge = TopoDS::Edge(edges(i));
        double first = 0.0;
        double last = 0.0;
        if (BRep_Tool::Degenerated(edge) || BRep_Tool::Curve(edge, first, last).IsNull())
            continue;
        try
        {
            AddCurve(lines, BRepAdaptor_Curve(edge));
        }
        catch (Standard_Failure const&)
        {
            // An edge that cannot be followed has no line.
        }
    }
    return lines;
}

Polylines PiecesOf(ICurve& curve)
{
    Polylines lines;
    for (unsigned long long i = 0; i < curve.CurveDataCount(); ++i)
        if (ICurveData* const data = curve.CurveDataAt(i))
            AddData(lines, *data);
    GMK::gmk_array<KVR::curve*> const kernelCurves = curve.KernelCurves();
    for (KVR::curve const* const piece : kernelCurves)
    {
        if (!piece || piece->Geometry().IsNull())
            continue;
        try
        {
            AddCurve(lines, GeomAdaptor_Curve(piece->Geometry(), piece->First(), piece->Last()));
        }
        catch (Standard_Failure const&)
        {
            // As above.
        }
    }
    return lines;
}

}  // namespace KVR
