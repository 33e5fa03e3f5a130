#include "exchange/import/ModelBox.h"

#include <BRepBndLib.hxx>
#include <TopoDS_Iterator.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>
#include <vector>

#include "exchange/import/ProductPlan.h"
#include "exchange/run/Beside.h"

namespace KVR
{

namespace
{

// What is no compound, with its places.
void AddPieces(TopoDS_Shape const& shape, std::vector<TopoDS_Shape>& pieces)
{
    std::vector<TopoDS_Shape> work{shape};
    while (!work.empty())
    {
        TopoDS_Shape const current = work.back();
        work.pop_back();
        if (current.IsNull())
            continue;
        if (current.ShapeType() != TopAbs_COMPOUND)
            pieces.push_back(current);
        else
            for (TopoDS_Iterator child(current); child.More(); child.Next())
                work.push_back(child.Value());
    }
}

}  // namespace

Bnd_Box BoxOfModel(ProductPlan const& plan)
{
    std::vector<TopoDS_Shape> pieces;
    for (std::size_t const root : plan.roots)
        AddPieces(XCAFDoc_ShapeTool::GetShape(plan.components[root].label), pieces);
    std::vector<Bnd_Box> boxes(pieces.size());
    DoBeside(pieces.size(), [&](std::size_t place) { BRepBndLib::Add(pieces[place], boxes[place]); });
    Bnd_Box box;
    for (Bnd_Box const& piece : boxes)
        box.Add(piece);
    return box;
}

double DiagonalOfModel(ProductPlan const& plan)
{
    Bnd_Box const box = BoxOfModel(plan);
    return box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
}

}  // namespace KVR
