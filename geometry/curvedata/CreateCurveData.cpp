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

namespace
{

using CurveMaker = ICurveData*(StoreCursor& store, unsigned level);

template <class Data>
ICurveData* Make(StoreCursor& store, unsigned)
{
    return new Data(store);
}

ICurveData* MakeComposite(StoreCursor& store, unsigned level)
{
    return level < kDeepestComposite ? new XMLCompositeCrvData(store, level + 1) : nullptr;
}

struct KindRow
{
    CurveKind kind;
    CurveMaker* make;
};

constexpr KindRow kKindRows[] = {
    {kCurveKind_Line, &Make<XMLLineData>},       {kCurveKind_Ray, &Make<XMLRayData>},
    {kCurveKind_Ellipse, &Make<XMLEllipseData>}, {kCurveKind_Polyline, &Make<XMLPolylineData>},
    {kCurveKind_Composite, &MakeComposite},      {kCurveKind_Nurbs, &Make<XMLNurbsCurveData>},
};

// Null for a type that is no curve.
CurveMaker* MakerOf(std::uint64_t type) noexcept
{
    for (KindRow const& row : kKindRows)
    {
        if (row.kind == type)
            return row.make;
    }
    return nullptr;
}

}  // namespace

ICurveData* CreateCurveData(std::FILE* store, std::uint32_t kind, bool swapBytes)
{
    if (!store)
        return nullptr;
    StoreCursor cursor(store, swapBytes, StoreCursor::kFieldsOnly);
    return CreateCurveData(cursor, kind, 0);
}

bool IsCurveKind(std::uint64_t type) noexcept
{
    return MakerOf(type) != nullptr;
}

ICurveData* CreateCurveData(StoreCursor& store, std::uint32_t kind, unsigned level)
{
    CurveMaker* const make = MakerOf(kind);
    return make ? make(store, level) : nullptr;
}

}  // namespace KVR
