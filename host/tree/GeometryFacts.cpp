#include "host/tree/GeometryFacts.h"

#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cmath>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"

namespace KVR
{

namespace
{

constexpr int kPointsOnCurve = 1000;

// Adds the points of one piece of a curve.
class CurveBox final : public CurveDataVisitor
{
public:
    explicit CurveBox(std::optional<Box>& box) : m_box(box) {}

    void Visit(IStraightData* data) override { AddPointsOn(*data); }
    void Visit(IRayData* data) override { AddPointsOn(*data); }
    void Visit(IEllipseData* data) override { AddPointsOn(*data); }
    void Visit(ICompositeCurveData* data) override { AddPointsOn(*data); }
    void Visit(INurbsCurveData* data) override { AddPointsOn(*data); }
    void Visit(IPolyLineData* data) override
    {
        std::uint32_t count = 0;
        data->PointCount(count);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            if (data->Point(static_cast<int>(i), x, y, z) == kDataReturnCode_Ok)
                Add(x, y, z);
        }
    }

private:
    void AddPointsOn(ICurveData const& data)
    {
        Interval range(0.0, 0.0);
        if (data.ParameterRange(range) != kDataReturnCode_Ok)
            return;
        for (int i = 0; i <= kPointsOnCurve; ++i)
        {
            double const share = static_cast<double>(i) / kPointsOnCurve;
            Position point;
            if (data.Evaluate_ex(range.Lower() * (1.0 - share) + range.Upper() * share, point) == kDataReturnCode_Ok)
                Add(point.X(), point.Y(), point.Z());
        }
    }

    void Add(double x, double y, double z)
    {
        if (std::isfinite(x) && std::isfinite(y) && std::isfinite(z))
            m_box = Box::Around(m_box, x, y, z);
    }

    std::optional<Box>& m_box;
};

class FactsVisitor final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;

    void Visit(IPolygonMesh* mesh) override
    {
        unsigned long const vertexCount = mesh->VertexCount();
        facts.counts = {{"polygon", "polygons", "Polygons", mesh->PolygonCount()},
                        {"vertex", "vertices", "Vertices", vertexCount}};
        for (unsigned long i = 0; i < vertexCount; ++i)
        {
            PolygonVertex const vertex = mesh->VertexAt(i);
            facts.box = Box::Around(facts.box, vertex.x, vertex.y, vertex.z);
        }
    }

    void Visit(ICurve* object) override
    {
        ICurve const& curve = *object;
        unsigned long long const count = curve.CurveDataCount();
        facts.counts = {{"piece", "pieces", "Pieces", count}};
        CurveBox pieces(facts.box);
        for (unsigned long long i = 0; i < count; ++i)
        {
            if (ICurveData* const data = curve.CurveDataAt(i))
                data->AcceptVisitor(&pieces);
        }
    }

    void Visit(IBrep* brep) override
    {
        BODY const* const body = brep->Body();
        if (!body)
        {
            facts.remark = "no body";
            return;
        }
        facts.counts = {{"solid", "solids", "Solids", CountOf(*body, TopAbs_SOLID)},
                        {"face", "faces", "Faces", CountOf(*body, TopAbs_FACE)},
                        {"edge", "edges", "Edges", CountOf(*body, TopAbs_EDGE)},
                        {"vertex", "vertices", "Vertices", CountOf(*body, TopAbs_VERTEX)}};
    }

    GeometryFacts facts;

private:
    static unsigned long long CountOf(BODY const& body, TopAbs_ShapeEnum kind)
    {
        TopTools_IndexedMapOfShape parts;
        TopExp::MapShapes(body.Shape(), kind, parts);
        return static_cast<unsigned long long>(parts.Extent());
    }
};

}  // namespace

Box Box::Around(std::optional<Box> const& box, double x, double y, double z)
{
    double const point[3] = {x, y, z};
    Box around = box.value_or(Box{{x, y, z}, {x, y, z}});
    for (int axis = 0; axis < 3; ++axis)
    {
        around.low[axis] = std::min(around.low[axis], point[axis]);
        around.high[axis] = std::max(around.high[axis], point[axis]);
    }
    return around;
}

GeometryFacts GeometryFacts::Of(IObject& object)
{
    FactsVisitor visitor;
    object.AcceptVisitor(&visitor);
    return visitor.facts;
}

}  // namespace KVR
