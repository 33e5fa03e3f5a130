#include "geometry/curvedata/CreateCurveData.h"

#include "framework/xml_util/StoreCursor.h"
#include "geometry/curvedata/CurveKind.h"
#include "geometry/curvedata/XMLCompositeCrvData.h"
#include "geometry/curvedata/XMLEllipseData.h"
#include "geometry/curvedata/XMLLineData.h"
#include "geometry/curvedata/XMLNurbsCurveData.h"
#include "geometry/curvedata/XMLPolylineData.h"
#include "geometry/curvedata/XMLRayData.h"

namespace KVR
{

ICurveData* CreateCurveData(std::FILE* store, std::uint32_t kind, bool swapBytes)
{
    if (!store)
        return nullptr;
    StoreCursor cursor(store, swapBytes, StoreCursor::kFieldsOnly);
    return CreateCurveData(cursor, kind, 0);
}

ICurveData* CreateCurveData(StoreCursor& store, std::uint32_t kind, unsigned level)
{
    switch (kind)
    {
        case kCurveKind_Line:
            return new XMLLineData(store);
        case kCurveKind_Ray:
            return new XMLRayData(store);
        case kCurveKind_Ellipse:
            return new XMLEllipseData(store);
        case kCurveKind_Polyline:
            return new XMLPolylineData(store);
        case kCurveKind_Composite:
            return level < kDeepestComposite ? new XMLCompositeCrvData(store, level + 1) : nullptr;
        case kCurveKind_Nurbs:
            return new XMLNurbsCurveData(store);
        default:
            return nullptr;
    }
}

}  // namespace KVR
