#include "framework/kernel/body_type.h"

#include <TopExp_Explorer.hxx>
#include <TopoDS_Shape.hxx>

#include "framework/kernel/entity.h"

namespace KVR
{

BODY_TYPE gki_body_type(BODY const& body)
{
    TopoDS_Shape const& shape = body.Shape();
    bool const hasSolids = TopExp_Explorer(shape, TopAbs_SOLID).More();
    bool const hasSheets = TopExp_Explorer(shape, TopAbs_FACE, TopAbs_SOLID).More();
    bool const hasWires = TopExp_Explorer(shape, TopAbs_EDGE, TopAbs_FACE).More();
    if (hasSolids + hasSheets + hasWires > 1)
        return kBodyType_Mixed;
    if (hasSolids)
        return kBodyType_Solid;
    if (hasSheets)
        return kBodyType_Sheet;
    return hasWires ? kBodyType_Wire : kBodyType_Empty;
}

}  // namespace KVR
