#include "exchange/import/ModelBox.h"

#include <BRepBndLib.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>

#include "exchange/import/ProductPlan.h"

namespace KVR
{

Bnd_Box BoxOfModel(ProductPlan const& plan)
{
    Bnd_Box box;
    for (std::size_t const root : plan.roots)
        BRepBndLib::Add(XCAFDoc_ShapeTool::GetShape(plan.components[root].label), box);
    return box;
}

double DiagonalOfModel(ProductPlan const& plan)
{
    Bnd_Box const box = BoxOfModel(plan);
    return box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
}

}  // namespace KVR
