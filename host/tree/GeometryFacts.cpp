#include "host/tree/GeometryFacts.h"

#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>

#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "scene/CurvePoints.h"

namespace KVR
{

namespace
{

class FactsVisitor final : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;

    void Visit(IPolygonMesh* mesh) override
    {
        GeometryFacts& facts = found.emplace();
        unsigned long const vertexCount = mesh->VertexCount();
        facts.counts = {{"polygon", "polygons", "Polygons", mesh->PolygonCount()},
                        {"vertex", "vertices", "Vertices", vertexCount}};
        for (unsigned long i = 0; i < vertexCount; ++i)
        {
            PolygonVertex const vertex = mesh->VertexAt(i);
            facts.box = SceneBox::Around(facts.box, {vertex.x, vertex.y, vertex.z});
        }
    }

    void Visit(ICurve* object) override
    {
        GeometryFacts& facts = found.emplace();
        ICurve const& curve = *object;
        facts.counts = {{"piece", "pieces", "Pieces", curve.CurveDataCount()}};
        SceneLines const lines = CurvePoints::Of(curve, CurvePoints::kForBoxes);
        for (std::size_t i = 0; i < lines.points.size(); i += 3)
            facts.box = SceneBox::Around(facts.box, {lines.points[i], lines.points[i + 1], lines.points[i + 2]});
    }

    void Visit(IBrep* brep) override
    {
        GeometryFacts& facts = found.emplace();
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

    // Nothing for another object.
    std::optional<GeometryFacts> found;

private:
    static unsigned long long CountOf(BODY const& body, TopAbs_ShapeEnum kind)
    {
        TopTools_IndexedMapOfShape parts;
        TopExp::MapShapes(body.Shape(), kind, parts);
        return static_cast<unsigned long long>(parts.Extent());
    }
};

}  // namespace

std::optional<GeometryFacts> GeometryFacts::Of(IObject& object)
{
    FactsVisitor visitor;
    object.AcceptVisitor(&visitor);
    return visitor.found;
}

}  // namespace KVR
