#include "host/import/ModelBox.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <gp_GTrsf.hxx>
#include <vector>

#include "host/import/ProductPlan.h"

namespace KVR
{

namespace
{

// Points on each edge: enough for a full circle.
constexpr int kPointsOnEdge = 8;

void AddEdge(Bnd_Box& box, TopoDS_Edge const& edge)
{
    double first = 0.0;
    double last = 0.0;
    if (BRep_Tool::Degenerated(edge) || BRep_Tool::Curve(edge, first, last).IsNull())
        return;
    BRepAdaptor_Curve const curve(edge);
    for (int i = 0; i <= kPointsOnEdge; ++i)
    {
        double const t = first + (last - first) * i / kPointsOnEdge;
        if (!Precision::IsInfinite(t))
            box.Add(curve.Value(t));
    }
}

Bnd_Box BoxOfPart(TopoDS_Shape const& shape)
{
    Bnd_Box box;
    TopTools_IndexedMapOfShape shapes;
    TopExp::MapShapes(shape, TopAbs_EDGE, shapes);
    for (int i = 1; i <= shapes.Extent(); ++i)
        AddEdge(box, TopoDS::Edge(shapes(i)));
    shapes.Clear();
    TopExp::MapShapes(shape, TopAbs_VERTEX, shapes);
    for (int i = 1; i <= shapes.Extent(); ++i)
        box.Add(BRep_Tool::Pnt(TopoDS::Vertex(shapes(i))));
    shapes.Clear();
    TopExp::MapShapes(shape, TopAbs_FACE, shapes);
    for (int i = 1; i <= shapes.Extent(); ++i)
    {
        TopLoc_Location location;
        Handle(Poly_Triangulation) const triangles = BRep_Tool::Triangulation(TopoDS::Face(shapes(i)), location);
        for (int node = 1; !triangles.IsNull() && node <= triangles->NbNodes(); ++node)
            box.Add(triangles->Node(node).Transformed(location.Transformation()));
    }
    return box;
}

gp_GTrsf TransformOf(Matrix3d const& matrix)
{
    gp_GTrsf transform;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            transform.SetValue(row + 1, column + 1, matrix.Element(row, column));
    return transform;
}

// The box around a box that was moved.
Bnd_Box Moved(Bnd_Box const& box, gp_GTrsf const& transform)
{
    Bnd_Box moved;
    if (box.IsVoid())
        return moved;
    gp_Pnt const low = box.CornerMin();
    gp_Pnt const high = box.CornerMax();
    for (int corner = 0; corner < 8; ++corner)
    {
        gp_XYZ point(corner & 1 ? low.X() : high.X(), corner & 2 ? low.Y() : high.Y(), corner & 4 ? low.Z() : high.Z());
        transform.Transforms(point);
        moved.Add(gp_Pnt(point));
    }
    return moved;
}

}  // namespace

double DiagonalOfModel(ProductPlan const& plan)
{
    // What an assembly places stands behind it in a plan, or was met before: boxes are filled until nothing is missing.
    std::vector<Bnd_Box> boxes(plan.components.size());
    for (std::size_t i = 0; i < plan.components.size(); ++i)
        if (!plan.components[i].shape.IsNull())
            boxes[i] = BoxOfPart(plan.components[i].shape);
    enum class Mark
    {
        kNew,
        kOpen,
        kDone
    };
    std::vector<Mark> marks(plan.components.size(), Mark::kNew);
    for (std::size_t const root : plan.roots)
    {
        std::vector<std::size_t> path{root};
        while (!path.empty())
        {
            std::size_t const current = path.back();
            ComponentPlan const& component = plan.components[current];
            if (marks[current] == Mark::kNew)
            {
                marks[current] = Mark::kOpen;
                for (PlacementPlan const& placement : component.placements)
                    if (marks[placement.target] == Mark::kNew)
                        path.push_back(placement.target);
                continue;
            }
            path.pop_back();
            if (marks[current] == Mark::kDone)
                continue;
            marks[current] = Mark::kDone;
            for (PlacementPlan const& placement : component.placements)
            {
                Bnd_Box const moved = Moved(boxes[placement.target], TransformOf(placement.transform));
                if (!moved.IsVoid())
                    boxes[current].Add(moved);
            }
        }
    }
    Bnd_Box all;
    for (std::size_t const root : plan.roots)
        if (!boxes[root].IsVoid())
            all.Add(boxes[root]);
    return all.IsVoid() ? 0.0 : std::sqrt(all.SquareExtent());
}

}  // namespace KVR
